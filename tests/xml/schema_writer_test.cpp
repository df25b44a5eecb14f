#include <kaxml/kaxml.h>

#include "platform/test_support.h"
#include "support/expectations.h"

#include <functional>

namespace KAXML::Test {
namespace {

// A schema that writes over an existing file.
struct SchemaWriter : testing::Test {
    const std::function<int()> write = [this] { return schema.WriteXML(path.c_str()); };

    // Whatever failed has left no trace.
    void TearDown() override {
        EXPECT_EQ(BytesOf(folder / "x"), "old");
        EXPECT_EQ(folder.FileCount(), 1U);
    }

    const TemporaryFolder folder;
    const std::wstring path = folder.Write("x", "old");
    CKaSchema schema{L"Plant", L"pl", nullptr};
};

TEST_F(SchemaWriter, ReferencesThatCannotBeDeclaredAreRefused) {
    CKaSchemaReference reference;
    reference.m_schemaName = L"Base";
    reference.m_versionString = L"1.0";
    for (const wchar_t* const prefix : {L"", L"a b", L"1a", L"a:b", L"xml", L"xmlns", L"\x01"}) {
        schema = CKaSchema(L"Plant", L"pl", nullptr);
        reference.m_schemaPrefix = prefix;
        schema.AddReference(reference);
        EXPECT_THROW(write(), _com_error) << Narrow(prefix);
    }
}

TEST_F(SchemaWriter, EndsAndValuesWithoutAFormAreRefused) {
    const std::wstring mismatch = L"Target of KaRelationshipClass 'Feeds' contains mismatched number of Class "
                                  L"references and Key Vectors";
    const std::wstring notFound = L"' in KaSchema 'Plant' or its referenced Schemas.";
    CKaClass& pump = *schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS | KA_STRUCT_CLASS);
    CKaRelationshipClass& feeds = *schema.CreateKaRelationshipClass(L"Feeds", L"", KA_DOMAIN_CLASS);
    feeds.m_targets.m_classNames = {KAXML_ANY_CLASS};
    ExpectThrows<KAXMLLogicError>(write, mismatch);
    feeds.m_targets.m_keyVectors = {{}};
    feeds.m_source.m_className = L"Tank";
    ExpectThrows<KAXMLFormatError>(write, L"Cannot find KaClass 'Tank" + notFound);
    feeds.m_source.m_className = L"x:Pump";
    ExpectThrows<KAXMLDomainError>(write, L"KaSchema with prefix 'x' not found among 'Plant's referenced schemas");
    // Any class may stand at the source only, and is left out there.
    feeds.m_source.m_className = KAXML_ANY_CLASS;
    ExpectThrows<KAXMLFormatError>(write, std::wstring(L"Cannot find KaClass '") + KAXML_ANY_CLASS + notFound);
    schema.AddKaCustomAttribute(new CKaCustomAttribute(&pump));
    auto* const part = new KaStructValue(pump.AddKaProperty(L"Part", L"Pump", L""));
    schema.GetKaCustomAttribute(0)->AddKaValue(part);
    part->SetValue(nullptr);
    ExpectThrows<KAXMLLogicError>(write, L"Can't serialize a NULL struct");
}

TEST_F(SchemaWriter, CharactersThatXmlCannotHoldAreNamedWithTheirItem) {
    CKaClass& pump = *schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
    CKaProperty& tag = *pump.AddKaProperty(L"Tag", L"string", L"");
    CKaRelationshipClass& feeds = *schema.CreateKaRelationshipClass(L"Feeds", L"", KA_DOMAIN_CLASS);
    feeds.m_source.m_className = L"Pump";
    feeds.m_source.m_keyVector = {L""};
    auto note = std::make_unique<CKaCustomAttribute>(&pump);
    note->SetPropertyValue(L"Tag", L"t");
    CKaValue& value = *note->GetPrimitiveValue(L"Tag");
    tag.AddKaCustomAttribute(note.release());
    const std::wstring kind = L": XML cannot hold the character U+";
    const std::wstring inTag = L"KaClass[typeName='Pump']/KaProperty[propertyName='Tag']/";
    const std::wstring high(1, static_cast<wchar_t>(0xD83D));
    const std::tuple<std::function<void(const wchar_t*)>, std::wstring, std::wstring> cases[] = {
        {[&](auto* text) { schema.SetDisplayLabel(text); }, L"a\x01", L"@displayLabel" + kind + L"0001"},
        {[&](auto* text) { schema.SetDescription(text); }, high + L"x", L"@description" + kind + L"D83D"},
        {[&](auto* text) { tag.SetDisplayLabel(text); }, L"\xFFFF", inTag + L"@displayLabel" + kind + L"FFFF"},
        {[&](auto* text) { value.SetValue(text); }, L"a\xFFFE",
         inTag + L"KaCustomAttributes/Pump/Tag/text()" + kind + L"FFFE"},
        {[&](auto* text) { feeds.m_source.m_keyVector[0] = text; }, L"\x08",
         L"KaRelationshipClass[typeName='Feeds']/Source/Class/Key/Property[name='\xFFFD']/@name" + kind + L"0008"},
    };
    for (const auto& [set, text, failure] : cases) {
        set(text.c_str());
        try {
            write();
            ADD_FAILURE() << Narrow(failure);
        } catch (const _com_error& error) {
            EXPECT_EQ(error.Description(), L"/KaSchema/" + failure);
        }
        set(L"");
    }
}

// A client's class that has its own idea of writing.
struct ClientClass : CKaRelationshipClass {
    ClientClass(CKaSchema* schema, int itsResult) : CKaRelationshipClass(L"C", schema, nullptr), result(itsResult) {}
    int WriteXML(IXMLDOMDocument2*, IXMLDOMNode*) override { return result != 0 ? result : throw std::string("C"); }
    const int result;
};

TEST_F(SchemaWriter, StatusOfClientsClassesIsReturnedAndNothingSaved) {
    schema.AddKaRelationshipClass(new ClientClass(&schema, 7));
    EXPECT_EQ(write(), 7);
    schema.AddKaClass(new ClientClass(&schema, -1));
    EXPECT_EQ(write(), -1);
    schema = CKaSchema(L"Plant", L"pl", nullptr);
    schema.AddKaClass(new ClientClass(&schema, 0));
    EXPECT_THROW(write(), std::string);
}

} // namespace
} // namespace KAXML::Test

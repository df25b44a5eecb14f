#include <kaxml/kaxml.h>

#include "platform/test_support.h"
#include "support/expectations.h"

#include <functional>

namespace KAXML::Test {
namespace {

// A schema that writes over an existing file.
class SchemaWriter : public testing::Test {
  protected:
    int Write() { return schema.WriteXML(path.c_str()); }

    // Runs what must fail, and checks that it left no trace.
    template <typename Run> void LeavesTheOldFile(Run run) {
        run();
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
        LeavesTheOldFile([&] { EXPECT_THROW(Write(), _com_error) << Narrow(prefix); });
    }
    schema = CKaSchema(L"Plant", L"pl", nullptr);
    reference.m_schemaPrefix = L"b";
    reference.m_versionString = L"1";
    schema.AddReference(reference);
    LeavesTheOldFile([&] { EXPECT_THROW(Write(), KAXMLFormatError); });
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
    const std::wstring inPump = L"/KaSchema/KaClass[typeName='Pump']";
    const std::wstring inTag = inPump + L"/KaProperty[propertyName='Tag']";
    const std::wstring high(1, static_cast<wchar_t>(0xD83D));
    const struct {
        std::function<void(const wchar_t*)> set;
        std::wstring text, item, character;
    } cases[] = {
        {[&](auto* text) { schema.SetDisplayLabel(text); }, L"a\x01", L"/KaSchema/@displayLabel", L"U+0001"},
        {[&](auto* text) { schema.SetDescription(text); }, high + L"x", L"/KaSchema/@description", L"U+D83D"},
        {[&](auto* text) { pump.SetDescription(text); }, L"\xFFFF", inPump + L"/@description", L"U+FFFF"},
        {[&](auto* text) { tag.SetDisplayLabel(text); }, L"\x1B", inTag + L"/@displayLabel", L"U+001B"},
        {[&](auto* text) { value.SetValue(text); }, L"a\xFFFE", inTag + L"/KaCustomAttributes/Pump/Tag/text()",
         L"U+FFFE"},
        {[&](auto* text) { feeds.m_source.m_keyVector[0] = text; }, L"\x08",
         L"/KaSchema/KaRelationshipClass[typeName='Feeds']/Source/Class/Key/Property[name='\xFFFD']/@name", L"U+0008"},
    };
    for (const auto& each : cases) {
        each.set(each.text.c_str());
        LeavesTheOldFile([&] {
            try {
                Write();
                ADD_FAILURE() << Narrow(each.item);
            } catch (const _com_error& error) {
                EXPECT_EQ(Narrow(error.Description()),
                          Narrow(each.item + L": XML cannot hold the character " + each.character));
            }
        });
        each.set(L"");
    }
    EXPECT_EQ(Write(), 0);
}

// A client's class that has its own idea of writing.
class ClientClass : public CKaRelationshipClass {
  public:
    ClientClass(CKaSchema* schema, int result) : CKaRelationshipClass(L"Client", schema, nullptr), m_result(result) {}
    int WriteXML(IXMLDOMDocument2*, IXMLDOMNode*) override {
        if (m_result == 0)
            throw std::string("client");
        return m_result;
    }

  private:
    int m_result;
};

TEST_F(SchemaWriter, StatusOfClientsClassesIsReturnedAndNothingSaved) {
    for (const bool asRelationshipClass : {false, true}) {
        for (const int result : {7, -1, 0}) {
            schema = CKaSchema(L"Plant", L"pl", nullptr);
            if (asRelationshipClass)
                schema.AddKaRelationshipClass(new ClientClass(&schema, result));
            else
                schema.AddKaClass(new ClientClass(&schema, result));
            LeavesTheOldFile([&] {
                if (result == 0)
                    EXPECT_THROW(Write(), std::string);
                else
                    EXPECT_EQ(Write(), result);
            });
        }
    }
}

} // namespace
} // namespace KAXML::Test

#include "support/expectations.h"

namespace KAXML::Test {
namespace {

std::wstring NamesOf(CKaSchema& schema) {
    std::wstring names;
    CKaClassIterator classes(&schema);
    for (const CKaClass* each = classes.Begin(); each != nullptr; each = classes.Next())
        names += each->TypeName() + L' ';
    return names;
}

TEST(Schema, ValidatesItsNameThenItsPrefix) {
    const std::wstring begin = L" names must begin with a letter or '_': '";
    ExpectThrows<KAXMLDomainError>([] { CKaSchema(L"1a", L"1b", nullptr); }, L"KaSchema" + begin + L"1a'");
    ExpectThrows<KAXMLLogicError>([] { CKaSchema(nullptr, nullptr, nullptr); }, L"KaSchema names cannot be NULL!");
    ExpectThrows<KAXMLDomainError>([] { CKaSchema(L"a", L"1b", nullptr); }, L"KaClass or KaProperty" + begin + L"1b'");
    CKaSchema schema(L"Plant", L"pl", nullptr);
    EXPECT_EQ(schema.OfficialFilename(), L"Plant.00.00.kaschema.xml");
    ExpectThrows<KAXMLDomainError>([&] { schema.SetSchemaPrefix(L"1b"); }, L"KaSchema" + begin + L"1b'");
    schema.SchemaName() = L"1a";
    EXPECT_EQ(schema.XmlNamespace(), L"1a.00.00");
    ExpectThrows<KAXMLDomainError>([&] { schema.OfficialFilename(); }, L"KaSchema" + begin + L"1a'");
}

TEST(Schema, NumbersNamesAndPutsBasesFirst) {
    CKaSchema schema(L"Plant", L"pl", nullptr), other(L"Other", L"o", nullptr);
    for (const wchar_t* const name : {L"Pump2", L"Pump", L"Pump", L"Pump2"})
        schema.CreateKaClass(name, L"", KA_DOMAIN_CLASS);
    EXPECT_EQ(NamesOf(schema), L"Pump2 Pump Pump3 Pump22 ");
    schema.GetKaClassByIndex(1)->SetBaseClass(L"Pump22");
    schema.GetKaClassByIndex(3)->TypeName() = L"Away"; // the name that Pump gives its base is free now
    auto* const base = new CKaClass(L"Pump22", &other, nullptr);
    schema.AddKaClass(base);
    schema.AddKaClass(nullptr);
    EXPECT_EQ(NamesOf(schema), L"Pump2 Pump22 Pump Pump3 Away ");
    auto* const relationship = new CKaRelationshipClass(L"Pump", &other, nullptr); // goes to a list of its own
    schema.AddKaRelationshipClass(relationship);
    EXPECT_TRUE(base->GetKaSchema() == &schema && relationship->GetKaSchema() == &other);
    relationship->SetKaSchema(&schema);
    relationship->SetBaseClass(L"Away");
    schema.RemoveAllClasses();
    EXPECT_TRUE(NamesOf(schema).empty() && schema.GetKaRelationshipClass(0) == relationship);
    ExpectThrows<KAXMLLogicError>([&] { relationship->GetBaseKaClass(); },
                                  L"GetBaseKaClass is unable to find baseclass 'Away' of class 'Pump'.");
}

TEST(Schema, FindsClassesByNameAndType) {
    CKaSchema schema(L"Plant", L"pl", nullptr);
    EXPECT_EQ(schema.FindKaClass(nullptr, KA_ANY_CLASS_TYPE), nullptr); // there is nothing to compare it with
    CKaClass* const pump = schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
    CKaRelationshipClass* const feeds = schema.CreateKaRelationshipClass(L"Feeds", L"", KA_CUSTOM_ATTRIBUTE_CLASS);
    const std::vector<std::pair<unsigned long, const wchar_t*>> masks = {{0, L""},
                                                                         {1, L"P"},
                                                                         {2, L""},
                                                                         {5, L"PF"},
                                                                         {0xFFFFFFFF, L"PF"},
                                                                         {0xFFFFFFF8, L""},
                                                                         {0x1FFFFFFFF, L"PF"},
                                                                         {0x700000000, L""}};
    for (const auto& [mask, found] : masks)
        EXPECT_EQ((schema.FindKaClass(L"Pump", mask) == pump ? L"P" : L"") +
                      std::wstring(schema.FindKaRelationshipClass(L"Feeds", mask) == feeds ? L"F" : L""),
                  found);
    pump->SetClassType(6);
    EXPECT_TRUE(pump->IsStruct() == 2 && pump->IsCustomAttributeClass() == 4 && pump->IsDomainClass() == 0);
    EXPECT_TRUE(CKaClass(L"A", &schema, nullptr).MatchesClassType(0xFFFFFFFF));
}

} // namespace
} // namespace KAXML::Test

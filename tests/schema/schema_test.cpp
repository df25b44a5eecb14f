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
    ExpectThrows<KAXMLDomainError>([] { CKaSchema(L"a", L"1b", nullptr); }, L"KaClass or KaProperty" + begin + L"1b'");
    CKaSchema schema(L"Plant", L"pl", nullptr);
    EXPECT_EQ(schema.OfficialFilename(), L"Plant.00.00.kaschema.xml");
    ExpectThrows<KAXMLDomainError>([&] { schema.SetSchemaPrefix(L"1b"); }, L"KaSchema" + begin + L"1b'");
    schema.SchemaName() = L"1a";
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
    auto* const feeds = new CKaRelationshipClass(L"Pump", &other, nullptr); // goes to a list of its own
    schema.AddKaRelationshipClass(feeds);
    EXPECT_TRUE(base->GetKaSchema() == &schema && feeds->GetKaSchema() == &other && feeds->TypeName() == L"Pump");
    const std::vector<std::pair<unsigned long, bool>> masks = {
        {0, false},         {1, true},           {2, false},          {5, true},
        {0xFFFFFFFF, true}, {0xFFFFFFF8, false}, {0x1FFFFFFFF, true}, {0x700000000, false}};
    for (const auto& [mask, isFound] : masks)
        EXPECT_EQ(schema.FindKaClass(L"Pump3", mask) != nullptr, isFound) << mask;
    EXPECT_EQ(schema.FindKaRelationshipClass(L"Pump", KA_ANY_CLASS_TYPE), feeds); // of no type yet
    schema.RemoveAllClasses();
    EXPECT_TRUE(NamesOf(schema).empty() && schema.GetKaRelationshipClassCount() == 1);
    EXPECT_EQ(schema.FindKaClass(nullptr, KA_ANY_CLASS_TYPE), nullptr); // there is nothing to compare it with
}

} // namespace
} // namespace KAXML::Test

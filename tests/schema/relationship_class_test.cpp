#include "support/expectations.h"

namespace KAXML::Test {
namespace {

CKaClass* s_supplied;
CKaClass* Supply(CKaSchema*, const wchar_t* name) { return std::wstring(name) == L"Hidden" ? s_supplied : nullptr; }

TEST(RelationshipClass, FindsTheNearestCommonClassAndUpgradesPairs) {
    CKaSchema plant(L"Plant", L"pl", nullptr);
    for (const wchar_t* const name : {L"Equipment", L"Pump", L"Tank", L"Valve"})
        plant.CreateKaClass(name, L"", KA_DOMAIN_CLASS);
    for (const unsigned int derived : {1u, 2u})
        plant.GetKaClassByIndex(derived)->SetBaseClass(L"Equipment");
    auto* const other = new CKaSchema(L"Base", L"b", nullptr);
    CKaSchemaReference reference(other);
    plant.AddReference(reference);
    other->CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
    plant.SetKaClassResolutionHelper(&Supply);
    s_supplied = plant.FindKaClass(L"Tank", KA_ANY_CLASS_TYPE);

    CKaRelationshipClass feeds(L"Feeds", &plant, nullptr);
    const std::vector<std::tuple<const wchar_t*, const wchar_t*, const wchar_t*>> cases = {
        {L"Pump", L"KaObject", L"KaObject"},   {L"KaObject", L"No", L"KaObject"}, {L"Pump", L"Equipment", L"Equipment"},
        {L"Equipment", L"Pump", L"Equipment"}, {L"Pump", L"Tank", L"Equipment"},  {L"Pump", L"Valve", L"KaObject"},
        {L"pl:Tank", L"Pump", L"Equipment"},   {L"b:Pump", L"Tank", L"KaObject"}, {L"Hidden", L"Pump", L"Equipment"}};
    std::wstring result;
    for (const auto& [name1, name2, common] : cases) {
        EXPECT_EQ(feeds.FindCommonClass(&plant, name1, name2, result), 1);
        EXPECT_EQ(result, common);
    }
    EXPECT_EQ(feeds.FindCommonClass(&plant, L"Nobody", L"Nobody", result), 0);
    for (const std::wstring name : {L"Other", L"x:Pump", L"b:Tank"})
        ExpectThrows<KAXMLFormatError>(
            [&] { feeds.FindCommonClass(&plant, L"Pump", name.c_str(), result); },
            L"KaRelationshipClass 'Feeds' refers to KaClass '" + name +
                L"', which does not exist in the KaSchema 'Plant' or its referenced KaSchemas.");
    EXPECT_EQ(result, L"Nobody");

    for (const auto& [source, target, key] :
         {std::tuple(L"Pump", L"Valve", L"1"), {L"Tank", L"Valve", L"2"}, {L"Tank", L"Pump", L"3"}}) {
        CKaRelationshipConstraint pair;
        pair.SetSourceConstraint(new CKaConstraint(source, key));
        pair.SetTargetConstraint(new CKaConstraint(target, key));
        pair.SetTargetConstraint(pair.GetTargetConstraint()); // the one it holds
        feeds.UpgradeLegacyKaRelationshipConstraint(&plant, &pair);
    }
    EXPECT_TRUE(feeds.m_source.m_className == L"Equipment" && feeds.m_source.m_isPolymorphic == 1);
    EXPECT_EQ(feeds.m_source.m_keyVector, std::vector<std::wstring>{L"1"});
    EXPECT_EQ(feeds.m_targets.m_classNames, (std::vector<std::wstring>{L"Valve", L"Pump"}));
    EXPECT_EQ(feeds.m_targets.m_keyVectors, (std::vector<std::vector<std::wstring>>{{L"1"}, {L"3"}}));
}

} // namespace
} // namespace KAXML::Test

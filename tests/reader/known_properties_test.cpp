#include <kaxml/kaxml.h>

#include <kaxml/kaxml/reader/known_properties.h>

#include <gtest/gtest.h>

namespace KAXML::Test {
namespace {

TEST(KnownProperties, ForgetsWhatIsNoLongerThere) {
    CKaSchema schema(L"Plant", L"pl", nullptr);
    CKaClass* const base = schema.CreateKaClass(L"Base", L"", KA_DOMAIN_CLASS);
    CKaClass* const pump = schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
    pump->SetBaseClass(L"Base");
    pump->AddKaProperty(L"Size", L"int", L"");
    CKaProperty* const tag = base->AddKaProperty(L"Tag", L"string", L"");
    const std::wstring name = L"Tag";
    KnownProperties known;
    EXPECT_EQ(known.Find(*pump, name).property, nullptr);
    EXPECT_EQ(known.Search(*pump, name).number, 1U);
    EXPECT_EQ(known.Find(*pump, name).property, tag);
    EXPECT_EQ(known.Find(*base, name).property, nullptr) << "another class";
    tag->PropertyName() = L"Renamed";
    EXPECT_EQ(known.Find(*pump, name).property, nullptr);
    EXPECT_EQ(known.Search(*pump, name).property, nullptr);
    tag->PropertyName() = name;
    EXPECT_EQ(known.Find(*pump, name).property, tag);
    base->RemoveAllKaProperties();
    EXPECT_EQ(known.Find(*pump, name).property, nullptr);
}

} // namespace
} // namespace KAXML::Test

#include <kaxml/kaxml.h>

#include <kaxml/kaxml/reader/known_properties.h>

#include <gtest/gtest.h>

namespace KAXML::Test {
namespace {

TEST(KnownProperties, ForgetsWhatIsNoLongerThere) {
    CKaSchema schema(L"Plant", L"pl", nullptr);
    CKaClass* const base = schema.CreateKaClass(L"Base", L"", KA_DOMAIN_CLASS);
    schema.CreateKaClass(L"Other", L"", KA_DOMAIN_CLASS);
    CKaClass* const pump = schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
    pump->SetBaseClass(L"Base");
    pump->AddKaProperty(L"Size", L"int", L"");
    CKaProperty* const tag = base->AddKaProperty(L"Tag", L"string", L"");
    const XmlName name{L"", L"Tag", L"Tag"};
    KnownProperties known;
    const auto find = [&](const CKaClass& kaClass) { return known.Find(known.Use(kaClass), name).property; };
    EXPECT_EQ(find(*pump), nullptr);
    EXPECT_EQ(known.Search(known.Use(*pump), name).number, 1U);
    EXPECT_EQ(find(*pump), tag);
    EXPECT_EQ(find(*base), nullptr) << "another class";
    tag->PropertyName() = L"Renamed";
    EXPECT_EQ(find(*pump), nullptr);
    EXPECT_EQ(known.Search(known.Use(*pump), name).property, nullptr);
    tag->PropertyName() = L"Tag";
    EXPECT_EQ(find(*pump), tag);
    pump->SetBaseClass(L"Other");
    EXPECT_EQ(find(*pump), nullptr) << "another base class";
    pump->SetBaseClass(L"Base");
    EXPECT_EQ(find(*pump), tag);
    base->RemoveAllKaProperties();
    EXPECT_EQ(find(*pump), nullptr);
}

} // namespace
} // namespace KAXML::Test

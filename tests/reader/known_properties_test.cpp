#include <kaxml/kaxml.h>

#include <kaxml/kaxml/reader/known_properties.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

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

TEST(KnownProperties, KnowsManyOnceEachWasFoundAgain) {
    CKaSchema schema(L"Plant", L"pl", nullptr);
    CKaClass* const pump = schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
    std::vector<XmlName> names;
    for (std::uint32_t i = 0; i < 1000; ++i) {
        const std::wstring name = L"P" + std::to_wstring(i);
        pump->AddKaProperty(name, L"string", L"");
        names.push_back({L"", name, name, i});
    }
    KnownProperties known;
    const KnownClass& pumps = known.Use(*pump);
    for (int round = 0; round < 4; ++round) // the room for them grows
        for (const XmlName& name : names)
            if (known.Find(pumps, name).property == nullptr) {
                EXPECT_EQ(known.Search(pumps, name).number, name.number);
            }
    for (const XmlName& name : names)
        EXPECT_EQ(known.Find(pumps, name).property, pump->FindProperty(name.localName.c_str()));
}

} // namespace
} // namespace KAXML::Test

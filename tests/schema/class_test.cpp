#include "support/expectations.h"

namespace KAXML::Test {
namespace {

struct ClassTest : testing::Test {
    CKaClass* Add(const wchar_t* name) { return schema.CreateKaClass(name, L"", KA_DOMAIN_CLASS); }

    CKaSchema schema{L"Plant", L"pl", nullptr};
    CKaClass* base = Add(L"Equipment");
    CKaClass* pump = Add(L"Pump");
};

TEST_F(ClassTest, PropertiesAreFoundAlongTheBases) {
    CKaProperty* const tag = base->AddKaProperty(L"Tag", L"string", L"text");
    EXPECT_EQ(pump->AddKaProperty(L"Motor", L"Equipment", L"")->IsStruct(), 1);
    pump->SetBaseClass(L"Equipment");
    for (const wchar_t* const name : {L"Tag", L"tag", static_cast<const wchar_t*>(nullptr)})
        pump->RemoveKaProperty(name);
    EXPECT_EQ(pump->FindProperty(L"Tag"), tag);
    ExpectThrows<KAXMLDomainError>([this] { pump->AddKaProperty(L"Tag", L"int", L""); },
                                   L"Attempted to add duplicately named property Tag to class Pump");
    EXPECT_TRUE(pump->GetKaPropertyCount() == 1 && base->GetKaPropertyCount() == 1);
}

TEST_F(ClassTest, BasesAreRelativeAndNeverARing) {
    auto* const other = new CKaSchema(L"Other", L"o", nullptr);
    CKaSchemaReference reference(other);
    schema.AddReference(reference);
    CKaClass* const thing = other->CreateKaClass(L"Thing", L"", KA_DOMAIN_CLASS);
    pump->SetBaseClass(L"pl:Equipment");
    EXPECT_STREQ(pump->GetBaseClass(), L"Equipment");
    base->SetBaseClass(L"Thing");
    thing->TypeName() = L"Renamed";
    ExpectThrows<KAXMLLogicError>([&] { base->SetBaseClass(L"Pump"); },
                                  L"Attempted to set BaseClass of KaClass 'Equipment' to 'Pump' but KaClass 'Pump' is "
                                  L"or derives from KaClass 'Equipment'.");
    ExpectThrows<KAXMLDomainError>([&] { base->SetBaseClass(L"o:"); }, L"KaClass or KaProperty names cannot be blank!");
    EXPECT_TRUE(base->GetBaseKaClass() == thing && base->GetBaseClass() == std::wstring(L"o:Thing"));

    CKaClass* const last = Add(L"Last"); // Last -> Pump -> Equipment; then Equipment becomes like Last
    last->SetBaseClass(L"Pump");
    *base = *last;
    for (const CKaClass* const each : {base, pump, last})
        EXPECT_FALSE(each->HasProperty(L"Missing"));
    EXPECT_NE(pump->AddKaProperty(L"Tag", L"string", L""), nullptr);
    CKaRelationshipClass* const feeds = schema.CreateKaRelationshipClass(L"Feeds", L"", KA_DOMAIN_CLASS);
    feeds->SetBaseClass(L"Pump");
    schema.RemoveAllClasses();
    feeds->TypeName() = L"Pump"; // its base, as far as names say
    EXPECT_FALSE(feeds->HasProperty(L"Missing"));
    feeds->SetKaSchema(nullptr);
    ExpectThrows<KAXMLLogicError>([&] { feeds->GetBaseKaClass(); },
                                  L"Attempting to GetBaseKaClass of an KaClass that has no m_pKaSchema");
}

TEST_F(ClassTest, PropertiesBecomeArraysForGood) {
    const std::vector<std::tuple<const wchar_t*, const wchar_t*, int>> cases = {
        {L"1", L"1", 0}, {L"", L"1", 1}, {L"1", L"", 1}, {L"0", L"1", 1}, {L"1", L"unbounded", 1}, {L"1", L"01", 1}};
    for (const auto& [min, max, isArray] : cases) {
        CKaProperty property(pump);
        EXPECT_TRUE(property.IsArray() == 0 && property.GetClassDefaultValue() == nullptr);
        for (const auto& [minOccurs, maxOccurs] : {std::pair(min, max), {L"1", L"1"}}) {
            property.SetMinOccurs(minOccurs);
            property.SetMaxOccurs(maxOccurs);
            EXPECT_EQ(property.IsArray(), isArray);
        }
        property.SetClassDefaultValue(L"");
        EXPECT_STREQ(property.GetClassDefaultValue(), L"");
    }
}

} // namespace
} // namespace KAXML::Test

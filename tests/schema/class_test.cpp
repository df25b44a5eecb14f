#include "support/expectations.h"

namespace KAXML::Test {
namespace {

struct ClassTest : testing::Test {
    CKaSchema schema{L"Plant", L"pl", nullptr};
    CKaClass* base = schema.CreateKaClass(L"Equipment", L"", KA_DOMAIN_CLASS);
    CKaClass* pump = schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
};

TEST_F(ClassTest, BasesAreRelativeAndNeverARing) {
    CKaProperty* const tag = base->AddKaProperty(L"Tag", L"string", L"");
    auto* const other = new CKaSchema(L"Other", L"o", nullptr);
    CKaSchemaReference reference(other);
    schema.AddReference(reference);
    CKaClass* const thing = other->CreateKaClass(L"Thing", L"", KA_DOMAIN_CLASS);
    pump->SetBaseClass(L"pl:Equipment");
    base->SetBaseClass(L"Thing");
    thing->TypeName() = L"Renamed";
    pump->RemoveKaProperty(L"Tag"); // not its own
    ExpectThrows<KAXMLDomainError>([this] { pump->AddKaProperty(L"Tag", L"int", L""); },
                                   L"Attempted to add duplicately named property Tag to class Pump");
    ExpectThrows<KAXMLLogicError>([this] { base->SetBaseClass(L"Pump"); },
                                  L"Attempted to set BaseClass of KaClass 'Equipment' to 'Pump' but KaClass 'Pump' is "
                                  L"or derives from KaClass 'Equipment'.");
    EXPECT_TRUE(pump->FindProperty(L"Tag") == tag && pump->GetBaseClass() == std::wstring(L"Equipment"));
    EXPECT_TRUE(base->GetBaseKaClass() == thing && base->GetBaseClass() == std::wstring(L"o:Thing"));

    CKaClass last(L"Last", &schema, nullptr); // Last -> Pump -> Equipment; then Equipment becomes like Last
    last.SetBaseClass(L"Pump");
    *base = last;
    for (const CKaClass* const each : {base, pump, static_cast<CKaClass*>(&last)})
        EXPECT_FALSE(each->HasProperty(L"Missing"));
    CKaRelationshipClass& held = *schema.CreateKaRelationshipClass(L"Feeds", L"", KA_DOMAIN_CLASS);
    held.SetBaseClass(L"Pump");
    schema.RemoveAllClasses();
    ExpectThrows<KAXMLLogicError>([&] { held.GetBaseKaClass(); },
                                  L"GetBaseKaClass is unable to find baseclass 'Pump' of class 'Feeds'.");
    held.TypeName() = L"Pump"; // its base, as far as names say
    EXPECT_FALSE(held.HasProperty(L"Missing"));
    held.SetKaSchema(nullptr);
    ExpectThrows<KAXMLLogicError>([&] { held.GetBaseKaClass(); },
                                  L"Attempting to GetBaseKaClass of an KaClass that has no m_pKaSchema");
}

TEST_F(ClassTest, PropertiesBecomeArraysForGood) {
    for (const wchar_t* const bound : {L"1", L"0", L"", L"01", L"unbounded"})
        for (const auto set : {&CKaProperty::SetMinOccurs, &CKaProperty::SetMaxOccurs}) {
            CKaProperty property(pump);
            (property.*set)(bound);
            (property.*set)(L"1");
            EXPECT_EQ(property.IsArray() != 0, bound != std::wstring(L"1"));
        }
}

} // namespace
} // namespace KAXML::Test

#include "support/expectations.h"

#include <kaxml/platform/uuid.h>

#include <cerrno>
#include <functional>

namespace KAXML::Test {
namespace {

struct ArgumentsTest : testing::Test {
    // From another object and from itself.
    template <typename T> static void Assign(T& target, const T& source) {
        target = source;
        const T& same = target;
        target = same;
    }

    CKaSchema schema{L"Plant", L"pl", nullptr};
    CKaClass* pump = schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS | KA_STRUCT_CLASS);
    CKaProperty* flow = pump->AddKaProperty(L"Flow", L"double", L"");
    CKaProperty* part = pump->AddKaProperty(L"Part", L"Pump", L"");
    CKaRelationshipClass* feeds = schema.CreateKaRelationshipClass(L"Feeds", L"", KA_DOMAIN_CLASS);
    KaRelationshipInstance instance{feeds};
    CKaValue value{flow, L"1"};
    KaArrayValue array{flow};
};

TEST_F(ArgumentsTest, NullStandsForNothingWhereThatMeansSomething) {
    CKaConstraint end(L"Pump", L"key");
    end.SetClassName(L"Valve");
    end.SetClassName(nullptr);
    end.SetRoleLabel(L"feeds");
    end.SetRoleLabel(nullptr);
    end.AddKaRelationshipKey(nullptr);
    EXPECT_TRUE(end.GetClassNameW() == std::wstring(L"Valve") && end.GetRoleLabel() == std::wstring(L"feeds") &&
                end.GetKaRelationshipKeyCount() == 1);
    pump->AddKaCustomAttribute(nullptr);
    pump->AddKaProperty(nullptr);
    pump->RemoveKaProperty(nullptr);
    pump->RemoveKaProperty(L"Unknown");
    EXPECT_TRUE(pump->GetKaCustomAttributeCount() == 0 && pump->GetKaPropertyCount() == 2);
    pump->RemoveKaProperty(L"Flow");
    EXPECT_EQ(pump->GetKaProperty(0), part);
    part->SetClassDefaultValue(L"x");
    part->SetClassDefaultValue(nullptr);
    EXPECT_EQ(part->GetClassDefaultValue(), nullptr);
    schema.AddKaClass(static_cast<CKaRelationshipClass*>(nullptr));
    CKaSchema::RecycleKaValue(nullptr);
    std::wstring text = L"before";
    EXPECT_TRUE(UuidCreate(nullptr) == EINVAL && UuidToStringW(nullptr, text) == EINVAL && text == L"before");
}

TEST_F(ArgumentsTest, WhatDoesNotFitTheModelIsRefused) {
    CKaClass loose(L"Loose", &schema, nullptr);
    loose.SetKaSchema(nullptr);
    loose.SetIsDomainClass(0);
    auto* const attached = new CKaCustomAttribute(pump);
    feeds->AddKaCustomAttribute(attached);
    KaArrayValue structs(part);
    structs.PushBack(new KaStructValue(part));
    static_cast<KaStructValue*>(structs.GetValue(0))->SetValue(nullptr);
    const std::pair<std::wstring, std::function<void()>> cases[] = {
        {L"Attempted to add a KaCustomAttribute that is already attached to this item",
         [&] { feeds->AddKaCustomAttribute(attached); }},
        {L"0-th element of 'Pump' contains a NULL KaStructValue.", [&] { structs.GetStructInstance(0, nullptr); }},
        {L"Attempting to SetBaseClass of an KaClass that has no m_pKaSchema", [&] { loose.SetBaseClass(L"Pump"); }},
        {L"Attempting to get the FullName of KaClass 'Loose' that has no m_pKaSchema", [&] { loose.FullName(); }},
        {L"Attempting to add a struct property to KaClass 'Loose' that has no m_pKaSchema",
         [&] { loose.AddKaProperty(L"Part", L"Pump", L""); }},
    };
    for (const auto& [message, run] : cases)
        ExpectThrows<KAXMLLogicError>(run, message);
    std::wstring found;
    unsigned long number = 0;
    feeds->SetExtendedInfo(L"note", std::wstring(L"text"));
    EXPECT_TRUE(feeds->GetExtendedInfo(L"note", found) == 0 && found == L"text");
    EXPECT_TRUE(feeds->GetExtendedInfo(L"note", &number) != 0 && feeds->GetExtendedInfo(L"other", found) != 0);
}

TEST_F(ArgumentsTest, EveryKindOfObjectCanBeAssigned) {
    CKaValue otherValue(part, nullptr);
    KaArrayValue otherArray(part);
    KaStructValue structValue(part), otherStruct(part);
    CKaCustomAttribute attribute(pump), otherAttribute(pump);
    CKaProperty renamed(*flow);
    CKaSchemaReference reference(&schema), target;
    CKaConstraint end(L"Pump", L"key"), otherEnd(L"Feeds", L"");
    value.SetValue(L"2.5");
    array.PushBack(new CKaValue(value));
    structValue.GetValue()->SetPropertyValue(L"Flow", 4.5);
    attribute.SetInstanceID(std::wstring(L"A-1"));
    Assign(otherValue, value);
    Assign(otherArray, array);
    Assign(otherStruct, structValue);
    Assign(otherAttribute, attribute);
    Assign(renamed, *part);
    Assign(target, reference);
    Assign(otherEnd, end);
    Assign(*pump, *pump);
    Assign(*feeds, *feeds);
    Assign<CKaInstance>(instance, instance);
    EXPECT_TRUE(otherValue.Value() == L"2.5" && otherValue.GetProperty() == flow);
    EXPECT_TRUE(otherArray.GetLength() == 1 && otherArray.GetValue(0) != array.GetValue(0));
    double number = 0;
    otherStruct.GetValue()->GetPropertyValue(L"Flow", &number);
    EXPECT_EQ(number, 4.5);
    EXPECT_EQ(otherAttribute.GetInstanceID(), std::wstring(L"A-1"));
    EXPECT_TRUE(renamed.IsStruct() != 0 && renamed.PropertyName() == L"Part" && target.GetSchema() == &schema);
    EXPECT_EQ(otherEnd.GetKaRelationshipKey(0), L"key");
    EXPECT_TRUE(pump->GetKaPropertyCount() == 2 && feeds->TypeName() == L"Feeds" && instance.GetKaClass() == feeds);
    Assign(feeds->m_source, feeds->m_source);
    Assign(feeds->m_targets, feeds->m_targets);
    CKaTargets targets(feeds->m_targets);
    targets.m_classNames = {L"Pump"};
    CKaTargets moved(std::move(targets));
    targets = moved;
    EXPECT_EQ(targets.m_classNames.size(), 1U);
}

} // namespace
} // namespace KAXML::Test

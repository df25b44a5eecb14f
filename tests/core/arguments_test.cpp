#include "support/expectations.h"

#include <kaxml/platform/uuid.h>

#include <cerrno>
#include <limits>

namespace KAXML::Test {
namespace {

struct ArgumentsTest : testing::Test {
    struct Call {
        std::wstring message;
        std::function<void()> run;
    };
    template <typename Exception> void ExpectEach(const std::vector<Call>& calls) {
        for (const Call& call : calls)
            ExpectThrows<Exception>(call.run, call.message);
    }
    static std::wstring Null(const wchar_t* argument, const wchar_t* operation) {
        return std::wstring(L"Passed NULL ") + argument + L" to " + operation;
    }
    static std::wstring Index(const wchar_t* operation) {
        return std::wstring(L"Passed an index that is not below the count to ") + operation;
    }
    static std::wstring Range(const wchar_t* operation) {
        return std::wstring(L"Passed a value outside the 32-bit range to ") + operation;
    }

    CKaSchema schema{L"Plant", L"pl", nullptr};
    CKaClass* pump = schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS | KA_STRUCT_CLASS);
    CKaProperty* flow = pump->AddKaProperty(L"Flow", L"double", L"");
    CKaProperty* part = pump->AddKaProperty(L"Part", L"Pump", L"");
    CKaRelationshipClass* feeds = schema.CreateKaRelationshipClass(L"Feeds", L"", KA_DOMAIN_CLASS);
    KaRelationshipInstance instance{feeds};
    CKaValue value{flow, L"1"};
    KaArrayValue array{flow};
    std::wstring text = L"before";
    const wchar_t* const null = nullptr;
};

TEST_F(ArgumentsTest, WhatIsNoArgumentChangesNothing) {
    constexpr long kAbove = std::numeric_limits<long>::max();
    CKaConstraint end(L"Pump", L"key");
    ExpectEach<KAXMLInvalidArgument>({
        {Null(L"guid", L"GenerateGUID"), [] { GenerateGUID(nullptr); }},
        {Null(L"suffix", L"CreateTempFileName"), [&] { CreateTempFileName(null, text); }},
        {L"Passed NULL className into GenerateKaInstanceXMLIdentifier",
         [&] { GenerateKaInstanceXMLIdentifier(null, 1, text); }},
        {Range(L"GenerateKaInstanceXMLIdentifier"), [&] { GenerateKaInstanceXMLIdentifier(L"P", kAbove, text); }},
        {Null(L"searchPath", L"CKaSchema::SetSearchPath"), [&] { schema.SetSearchPath(nullptr); }},
        {Null(L"label", L"CKaSchema::SetDisplayLabel"), [&] { schema.SetDisplayLabel(nullptr); }},
        {Null(L"path", L"CKaSchema::ReadXML"), [&] { schema.ReadXML(nullptr); }},
        {Null(L"path", L"CKaSchema::WriteXML"), [&] { schema.WriteXML(nullptr); }},
        {Null(L"name", L"CKaSchema::FindReferencedSchema"), [&] { schema.FindReferencedSchema(null, L"1.0"); }},
        {Null(L"prefix", L"CKaSchema::FindReferencedSchemaByPrefix"),
         [&] { schema.FindReferencedSchemaByPrefix(nullptr); }},
        {L"CKaSchema::IterateOverRelationshipClasses called with NULL callback!",
         [&] { schema.IterateOverAllRelationshipClasses(nullptr, nullptr, 1); }},
        {L"Passed NULL or blank classname into CKaClass constructor", [&] { CKaClass(null, &schema, nullptr); }},
        {Null(L"label", L"CKaClass::SetDisplayLabel"), [&] { pump->SetDisplayLabel(nullptr); }},
        {Null(L"label", L"CKaProperty::SetDisplayLabel"), [&] { flow->SetDisplayLabel(nullptr); }},
        {Range(L"CKaProperty::SetAttrId"), [&] { flow->SetAttrId(kAbove); }},
        {Null(L"description", L"CKaCommon::SetDescription"), [&] { flow->SetDescription(null); }},
        {Range(L"CKaCommon::SetExtendedInfo"), [&] { pump->SetExtendedInfo(L"key", ~0UL); }},
        {Null(L"strength", L"CKaRelationshipClass::SetStrength"), [&] { feeds->SetStrength(nullptr); }},
        {Index(L"CKaConstraint::GetKaRelationshipKey"), [&] { end.GetKaRelationshipKey(1); }},
        {L"NULL pKaClass or pKaProperty passed to CreateKaValueForKaProperty",
         [&] { KaValueBase::CreateKaValueForKaProperty(nullptr, flow); }},
        {L"NULL pKaClass or pKaProperty passed to CreateKaValueForKaProperty",
         [&] { KaValueBase::CreateKaValueForKaProperty(pump, nullptr); }},
        {L"NULL pKaClass passed to CreateKaValueFromXml", [] { KaValueBase::CreateKaValueFromXml(nullptr, nullptr); }},
        {L"InternalSetValue called with a NULL value", [&] { value.SetValue(null); }},
        {Range(L"CKaValue::SetValue"), [&] { value.SetValue(kAbove); }},
        {Index(L"KaArrayValue::GetValue"), [&] { array.GetValue(0); }},
        {Null(L"typeName", L"CKaInstance::SetTypeName"), [&] { instance.SetTypeName(null); }},
        {Null(L"instanceId", L"CKaInstance::SetInstanceID"), [&] { instance.SetInstanceID(null); }},
        {Null(L"sourceId", L"KaRelationshipInstance::SetSourceID"), [&] { instance.SetSourceID(nullptr); }},
        {Index(L"CKaInstance::GetKaValue"), [&] { instance.GetKaValue(0); }},
    });
    ExpectEach<KAXMLLogicError>({
        {L"Cannot pass NULL pKaClass to CKaSchema::GetRelativeClassName.",
         [&] { schema.GetRelativeClassName(static_cast<CKaClass*>(nullptr)); }},
    });
    ExpectEach<KAXMLRuntimeError>({
        {L"Called CKaReferencedSchemaIterator::CKaReferencedSchemaIterator with NULL pKaSchema",
         [] { CKaReferencedSchemaIterator iterator(nullptr); }},
        {L"NULL context passed ot findKaRelationshipClassCallback",
         [&] { schema.FindKaRelationshipClass(nullptr, KA_ANY_CLASS_TYPE); }},
        {L"Unknown exception in CKaSchema::GetRecycledKaValue", [] { CKaSchema::GetRecycledKaValue(nullptr); }},
    });
    EXPECT_TRUE(text == L"before" && value.Value() == L"1" && instance.GetKaValueCount() == 0);
}

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
    KaRelationshipInstance other(instance);
    feeds->AddKaProperty(L"Part", L"Pump", L"");
    static_cast<KaStructValue*>(structs.GetValue(0))->SetValue(nullptr);
    ExpectEach<KAXMLLogicError>({
        {L"Attempted to add a KaCustomAttribute that is already attached to this item",
         [&] { feeds->AddKaCustomAttribute(attached); }},
        {L"0-th element of 'Pump' contains a NULL KaStructValue.", [&] { structs.GetStructInstance(0, nullptr); }},
        {L"Attempted to set primitive value into a non-primitive property",
         [&] { instance.SetPropertyValue(L"Part", L"x"); }},
        {L"Attempting to SetBaseClass of an KaClass that has no m_pKaSchema", [&] { loose.SetBaseClass(L"Pump"); }},
        {L"Attempting to get the FullName of KaClass 'Loose' that has no m_pKaSchema", [&] { loose.FullName(); }},
        {L"Attempting to add a struct property to KaClass 'Loose' that has no m_pKaSchema",
         [&] { loose.AddKaProperty(L"Part", L"Pump", L""); }},
        {L"Called GetPrimitiveValue for a non-primitive CKaValue", [&] { instance.PropertyValue(L"Part"); }},
    });
    std::wstring found;
    unsigned long number = 0;
    feeds->SetExtendedInfo(L"note", std::wstring(L"text"));
    EXPECT_TRUE(feeds->GetExtendedInfo(L"note", found) == 0 && found == L"text");
    EXPECT_TRUE(feeds->GetExtendedInfo(L"note", &number) != 0 && feeds->GetExtendedInfo(L"other", found) != 0);
}

TEST_F(ArgumentsTest, EveryKindOfObjectCanBeAssigned) {
    value.SetValue(L"2.5");
    CKaValue otherValue(part, nullptr);
    otherValue = value;
    array.PushBack(new CKaValue(value));
    KaArrayValue otherArray(part);
    otherArray = array;
    KaStructValue structValue(part), otherStruct(part);
    structValue.GetValue()->SetPropertyValue(L"Flow", 4.5);
    otherStruct = structValue;
    CKaCustomAttribute attribute(pump), otherAttribute(pump);
    attribute.SetInstanceID(std::wstring(L"A-1"));
    otherAttribute = attribute;
    double numbers[2];
    otherValue.GetValue(&numbers[0]);
    otherStruct.GetValue()->GetPropertyValue(L"Flow", &numbers[1]);
    EXPECT_TRUE(numbers[0] == 2.5 && numbers[1] == 4.5 && otherArray.GetLength() == 1 &&
                otherValue.GetProperty() == flow && otherAttribute.GetInstanceID() == std::wstring(L"A-1"));
    EXPECT_NE(otherArray.GetValue(0), array.GetValue(0));
    CKaProperty renamed(*flow);
    renamed = *part;
    CKaSchemaReference reference(&schema), target;
    target = reference;
    CKaConstraint end(L"Pump", L"key"), otherEnd(L"Feeds", L"");
    otherEnd = end;
    CKaTargets targets(feeds->m_targets);
    targets.m_classNames = {L"Pump"};
    CKaTargets moved(std::move(targets));
    targets = moved;
    EXPECT_TRUE(renamed.IsStruct() != 0 && target.GetSchema() == &schema && targets.m_classNames.size() == 1 &&
                otherEnd.GetKaRelationshipKey(0) == L"key");
    CKaProperty& sameProperty = renamed;
    KaArrayValue& sameArray = otherArray;
    KaStructValue& sameStruct = otherStruct;
    const CKaValue& sameValue = otherValue;
    const CKaSchemaReference& sameTarget = target;
    otherValue = sameValue;
    target = sameTarget;
    EXPECT_TRUE(otherValue.Value() == L"2.5" && target.GetSchema() == &schema);
    CKaClass& samePump = *pump;
    CKaRelationshipClass& sameFeeds = *feeds;
    CKaInstance& sameInstance = instance;
    *pump = samePump;
    *feeds = sameFeeds;
    static_cast<CKaInstance&>(instance) = sameInstance;
    feeds->m_source = sameFeeds.m_source;
    feeds->m_targets = sameFeeds.m_targets;
    EXPECT_TRUE(pump->GetKaPropertyCount() == 2 && feeds->TypeName() == L"Feeds" && instance.GetKaClass() == feeds);
    renamed = sameProperty;
    otherArray = sameArray;
    otherStruct = sameStruct;
    EXPECT_TRUE(renamed.PropertyName() == L"Part" && otherArray.GetLength() == 1 && otherStruct.GetValue() != nullptr);
}

} // namespace
} // namespace KAXML::Test

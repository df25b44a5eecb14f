#include "support/expectations.h"

#include <exception>
#include <functional>

namespace KAXML::Test {
namespace {

template <typename T> class ErrorsTest : public testing::Test {};
using Family = testing::Types<KAXMLException, KAXMLLogicError, KAXMLDomainError, KAXMLFormatError, KAXMLInvalidArgument,
                              KAXMLRuntimeError>;
TYPED_TEST_SUITE(ErrorsTest, Family);

TYPED_TEST(ErrorsTest, IsLoggedOnceAndKeepsItsTexts) {
    static_assert(std::is_base_of_v<KAXMLException, TypeParam> && !std::is_base_of_v<std::exception, TypeParam>);
    static_assert(std::is_base_of_v<KAXMLDomainError, KAXMLFormatError>);
    const LogRecorder log;
    const TypeParam plain(L"50 %s");
    TypeParam located(L"bad", L"Here::There");
    const TypeParam copy(located);
    located = plain;
    const TypeParam& self = located;
    located = self;
    EXPECT_EQ(log.Entries(), (std::vector<LogRecorder::Entry>{{LOG_ERROR, L"Exception", L"50 %s"},
                                                              {LOG_ERROR, L"Exception", L"bad @ Here::There"}}));
    ExpectThrows<TypeParam>([&copy] { throw copy; }, L"bad", L"Here::There");
    ExpectThrows<TypeParam>([&located] { throw located; }, L"50 %s");
}

using Call = std::function<void()>;
using Expect = void (*)(Call, std::wstring_view, std::wstring_view);

TEST(Errors, SayWhatTheModelRefuses) {
    const Expect invalid = &ExpectThrows<KAXMLInvalidArgument, Call>, logic = &ExpectThrows<KAXMLLogicError, Call>,
                 domain = &ExpectThrows<KAXMLDomainError, Call>, format = &ExpectThrows<KAXMLFormatError, Call>,
                 runtime = &ExpectThrows<KAXMLRuntimeError, Call>;
    CKaSchema s(L"Plant", L"pl", nullptr);
    CKaClass& c = *s.CreateKaClass(L"Pump", L"", 1);
    CKaProperty& p = *c.AddKaProperty(L"Flow", L"double", L"");
    CKaProperty& list = *c.AddKaProperty(L"List", L"Pump", L"");
    s.CreateKaRelationshipClass(L"Feeds", L"", 1);
    CKaInstance i(&c);
    CKaValue v(&p, L"1");
    KaArrayValue a(&list);
    KaStructValue& member = *new KaStructValue(&list);
    a.PushBack(&member);
    a.PushBack(nullptr);
    long number = 5;
    std::wstring text = L"before";
    const std::wstring range = L"Passed a value outside the 32-bit range to ";
    const std::tuple<Expect, Call, std::wstring> cases[] = {
        {invalid, [&] { CKaClass(L"A", nullptr, nullptr); }, L"Passed NULL pKaSchema into CKaClass constructor"},
        {invalid, [&] { CKaClass(L"", &s, nullptr); }, L"Passed NULL or blank classname into CKaClass constructor"},
        {invalid, [&] { c.SetTypeName(nullptr); }, L"NULL passed to CKaClass::SetTypeName"},
        {invalid, [&] { c.SetClassType(0x1000000AB); }, L"Called SetClassType with invalid classType=0x1000000ab"},
        {invalid, [&] { s.CreateKaClass(L"New", L"", 2); }, L"Called SetClassType with invalid classType=0x2"},
        {invalid, [&] { c.HasProperty(nullptr); }, L"Passed NULL propertyName to CKaClass::FindProperty"},
        {domain, [&] { c.AddKaProperty(&p); }, L"Attempted to add duplicately named property Flow to class Pump"},
        {logic, [&] { c.AddKaProperty(L"At", L"Int", L""); },
         L"KaProperty At has TypeName=Int but no KaClass with that name exists in the KaSchema."},
        {logic, [&] { c.SetBaseClass(L"X"); },
         L"Attempted to set BaseClass of KaClass 'Pump' to 'X' but no such class can be found in this KaSchema or "
         L"referenenced KaSchemas."},
        {format, [&] { c.SetBaseClass(L":Tank"); }, L"KaClass name ':Tank'cannot begin with ':'."},
        {invalid, [&] { p.SetMinOccurs(nullptr); }, L"passed NULL minOccurs into CKaProperty::SetMinOccurs"},
        {invalid, [&] { p.SetMaxOccurs(nullptr); }, L"passed NULL maxOccurs into CKaProperty::SetMaxOccurs"},
        {invalid, [&] { p.SetTypeName(nullptr); }, L"Passed NULL typeName to CKaProperty::SetTypeName"},
        {invalid, [&] { p.SetAttrId(2147483648); }, range + L"CKaProperty::SetAttrId"},
        {invalid, [&] { p.SetExtendedInfo(L"k", 4294967296); }, range + L"CKaCommon::SetExtendedInfo"},
        {logic, [&] { s.AddKaClass(&c); }, L"Attempted to add KaClass 'Pump' to a KaSchema that already holds it"},
        {runtime, [&] { s.FindKaClass(nullptr, 1); }, L"NULL context passed ot findKaClassCallback"},
        {invalid, [&] { s.IterateOverAllClasses(nullptr, &s, 0); },
         L"CKaSchema::IterateOverClasses called with NULL callback!"},
        {runtime, [&] { CKaClassIterator(nullptr); }, L"Called CKaClassIterator::CKaClassIterator with NULL pKaSchema"},
        {invalid, [&] { s.IterateOverAllRelationshipClasses(nullptr, &s, 0); },
         L"CKaSchema::IterateOverRelationshipClasses called with NULL callback!"},
        {runtime, [&] { s.FindKaRelationshipClass(nullptr, 1); },
         L"NULL context passed ot findKaRelationshipClassCallback"},
        {runtime, [&] { CKaReferencedSchemaIterator(nullptr); },
         L"Called CKaReferencedSchemaIterator::CKaReferencedSchemaIterator with NULL pKaSchema"},
        {logic, [&] { s.GetRelativeClassName(static_cast<CKaClass*>(nullptr)); },
         L"Cannot pass NULL pKaClass to CKaSchema::GetRelativeClassName."},
        {invalid, [&] { CKaSchemaReference(nullptr); }, L"CKaSchemaReference constructor requires a non-NULL KaSchema"},
        {invalid, [&] { CKaSchema::IsPrimitiveType(nullptr); }, L"Passed typeName to CKaSchema::IsPrimitiveType"},
        {format, [&] { s.GetRelativeClassName(L"pl:No"); },
         L"Cannot find KaClass 'pl:No' in KaSchema 'Plant' or its referenced Schemas."},
        {invalid, [&] { v.SetValue(nullptr); }, L"InternalSetValue called with a NULL value"},
        {invalid, [&] { v.SetValue(-2147483649); }, range + L"CKaValue::SetValue"},
        {invalid, [&] { v.GetValue(static_cast<long*>(nullptr)); }, L"Passed NULL pLong into CKaValue::GetValue"},
        {invalid, [&] { v.GetValue(static_cast<double*>(nullptr)); }, L"Passed NULL pDouble into CKaValue::GetValue"},
        {invalid, [&] { KaValueBase::CreateKaValueForKaProperty(nullptr, &p); },
         L"NULL pKaClass or pKaProperty passed to CreateKaValueForKaProperty"},
        {invalid, [&] { KaValueBase::CreateKaValueForKaProperty(&c, nullptr); },
         L"NULL pKaClass or pKaProperty passed to CreateKaValueForKaProperty"},
        {invalid, [] { KaValueBase::CreateKaValueFromXml(nullptr, nullptr); },
         L"NULL pKaClass passed to CreateKaValueFromXml"},
        {invalid, [&] { a.GetValue(2); }, L"Passed an index that is not below the count to KaArrayValue::GetValue"},
        {invalid, [&] { KaArrayValue{nullptr}; }, L"Passed NULL pKaProperty to KaValueBase::Reinitialize"},
        {runtime, [&] { KaStructValue{&p}; }, L"Could not find class for struct property"},
        {logic, [&] { a.PushBack(&member); },
         L"Attempted to add a member to array 'List' that an array or instance already holds"},
        {logic, [&] { i.AddKaValue(&member); },
         L"Attempted to add a value of property 'List' that an array or instance already holds"},
        {logic, [&] { a.GetStructInstance(0, L"P"); },
         L"0-th element of 'Pump' contains an instance of KaClass 'Pump' rather than the expected 'P'."},
        {logic, [&] { a.GetStructInstance(1, nullptr); }, L"1-th element of 'Pump' does not contain an KaStructValue."},
        {logic, [&] { CKaInstance(nullptr); }, L"You cannot construct a new CKaInstance with a NULL KaClass!"},
        {invalid, [&] { i.GetPropertyValue(nullptr); }, L"Passed NULL propertyName to CKaInstance::FindValue"},
        {logic, [&] { i.GetPropertyValue(L"Flow", &number); },
         L"Failed to find an CKaValue for property Flow in CKaInstance::FindValue"},
        {domain, [&] { i.SetPropertyValue(L"No", 1); },
         L"Attempted to create value for property 'No' which does not exist in class 'Pump'"},
        {invalid, [&] { i.SetPropertyValue(L"Flow", nullptr); }, L"InternalSetValue called with a NULL value"},
        {invalid, [&] { i.SetPropertyValue(L"Flow", 2147483648); }, range + L"CKaInstance::SetPropertyValue"},
        {invalid, [&] { i.SetPropertyValue(L"Flow", 4294967296u); }, range + L"CKaInstance::SetPropertyValue"},
        {invalid, [&] { GenerateKaInstanceXMLIdentifier(nullptr, 1, text); },
         L"Passed NULL className into GenerateKaInstanceXMLIdentifier"},
        {invalid, [&] { GenerateKaInstanceXMLIdentifier(L"P", 2147483648, text); },
         range + L"GenerateKaInstanceXMLIdentifier"},
        {invalid, [&] { CreateTempFileName(nullptr, text); }, L"Passed NULL suffix to CreateTempFileName"}};
    for (const auto& [expect, call, message] : cases)
        expect(call, message, L"");
    EXPECT_TRUE(s.GetKaClassCount() == 1 && c.GetKaPropertyCount() == 2 && c.GetClassType() == 1);
    EXPECT_TRUE(p.IsArray() == 0 && p.GetAttrId() == 0 && v.Value() == L"1" && a.GetLength() == 2);
    EXPECT_TRUE(i.GetKaValueCount() == 0 && number == 5 && text == L"before");
}

} // namespace
} // namespace KAXML::Test

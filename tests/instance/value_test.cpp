#include "support/expectations.h"

#include <cerrno>
#include <clocale>
#include <cmath>
#include <limits>
#include <memory>

namespace KAXML::Test {
namespace {

template <typename T> constexpr bool kReads = requires(const CKaValue& v, T* out) { v.GetValue(out); };
static_assert(kReads<long> && kReads<double> && !kReads<int> && !kReads<float> && !kReads<unsigned long>);

struct ValueTest : testing::Test {
    ValueTest() { setlocale(LC_ALL, "de_DE.UTF-8"); } // where it is installed, its decimal point is a comma
    ~ValueTest() override { setlocale(LC_ALL, "C"); }
    CKaProperty* Add(const wchar_t* name, const wchar_t* type) { return pump->AddKaProperty(name, type, L""); }

    CKaSchema schema{L"Plant", L"pl", nullptr};
    CKaClass* pump = schema.CreateKaClass(L"Pump", L"", KA_DOMAIN_CLASS);
    CKaProperty *flow = Add(L"Flow", L"double"), *list = Add(L"List", L"Pump"), *drive = Add(L"Drive", L"Pump");
};

// Reads the text as a number, which is out of range when a type is given.
template <typename Number>
void ExpectRead(CKaProperty* property, const std::wstring& text, Number expected, const std::wstring& outOf = {}) {
    const CKaValue value(property, text.c_str());
    Number number = 5;
    errno = EDOM;
    if (outOf.empty())
        value.GetValue(&number);
    else
        ExpectThrows<KAXMLRuntimeError>([&] { value.GetValue(&number); },
                                        L"Underflow or overflow while converting " + text + L" to " + outOf);
    EXPECT_EQ(number, expected) << Narrow(text);
    EXPECT_EQ(errno, EDOM);
}

TEST_F(ValueTest, ReadsAndWritesNumbersAsTheRunTimeLibraryDoes) {
    const double inf = std::numeric_limits<double>::infinity();
    const std::vector<std::pair<std::wstring, long>> longs = {
        {L"12abc", 12}, {L"", 0}, {L"abc", 0}, {L" \t-7", -7}, {L"1.5", 1}, {L"0x1", 0}, {L"+2147483647", 2147483647}};
    for (const auto& [text, number] : longs)
        ExpectRead(flow, text, number);
    for (const wchar_t* const text : {L"2147483648", L"12345678901", L"99999999999999999999"}) {
        ExpectRead(flow, text, 2147483647L, L"long");
        ExpectRead(flow, L"-9" + std::wstring(text), -2147483648L, L"long");
    }
    const std::vector<std::pair<std::wstring, double>> doubles = {{L"12abc", 12},     {L"", 0},       {L" -1.5", -1.5},
                                                                  {L"1,5", 1},        {L"0x1p4", 16}, {L"-inf", -inf},
                                                                  {L"Infinity", inf}, {L"1e3", 1000}};
    for (const auto& [text, number] : doubles)
        ExpectRead(flow, text, number);
    ExpectRead(flow, L"1e999", inf, L"a double");
    ExpectRead(flow, L"-1e999", -inf, L"a double");
    ExpectRead(flow, L"1e-999", 0., L"a double");
    const std::vector<std::pair<double, const wchar_t*>> written = {
        {1. / 3, L"0.333333333333333"},        {1e300, L"1e+300"},  {-2.5, L"-2.5"},  {1e15, L"1e+15"},
        {123456789012345, L"123456789012345"}, {0.0001, L"0.0001"}, {1e-5, L"1e-05"}, {-inf, L"-inf"}};
    CKaValue value(flow, nullptr);
    for (const auto& [number, text] : written) {
        value.SetValue(number);
        EXPECT_EQ(value.Value(), text);
    }
}

TEST_F(ValueTest, IsNullUntilItIsSet) {
    CKaValue value(flow, nullptr);
    value.Value() = L"7";
    EXPECT_TRUE(value.IsNull());
    value.SetValue(L"");
    EXPECT_FALSE(value.IsNull());
    value.SetValue(-5);
    ExpectThrows<KAXMLInvalidArgument>([&] { value.Reinitialize(nullptr); },
                                       L"Passed NULL pKaProperty to KaValueBase::Reinitialize");
    EXPECT_TRUE(value.IsNull() && value.PropertyName().empty() && value.GetProperty() == flow &&
                value.Value() == L"-5");
}

TEST_F(ValueTest, KindsFollowTheProperty) {
    const auto make = [this](CKaProperty* property) {
        return std::unique_ptr<KaValueBase>(KaValueBase::CreateKaValueForKaProperty(pump, property));
    };
    list->SetMaxOccurs(L"2");
    EXPECT_TRUE(make(flow)->IsNull() && dynamic_cast<CKaValue*>(make(flow).get()));
    EXPECT_TRUE(make(list)->IsNull() && dynamic_cast<KaArrayValue*>(make(list).get()));
    EXPECT_TRUE(!make(drive)->IsNull() && dynamic_cast<KaStructValue*>(make(drive).get()));
    drive->TypeName() = L"pl:Pump"; // a prefix is not interpreted
    ExpectThrows<KAXMLRuntimeError>([&] { make(drive); }, L"Could not find class for struct property");
}

} // namespace
} // namespace KAXML::Test

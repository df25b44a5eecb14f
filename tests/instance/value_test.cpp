#include "support/expectations.h"

#include <cerrno>
#include <cmath>

namespace KAXML::Test {
namespace {

template <typename T> constexpr bool kReads = requires(const CKaValue& v, T* out) { v.GetValue(out); };
static_assert(kReads<long> && kReads<double> && !kReads<int> && !kReads<float> && !kReads<unsigned long>);

struct ValueTest : testing::Test {
    // Reads the text as a number, which is out of range when a type is given.
    template <typename Number>
    void ExpectRead(const std::wstring& text, Number expected, const wchar_t* outOf = nullptr) {
        value.SetValue(text);
        Number number = 5;
        errno = EDOM;
        if (outOf == nullptr)
            value.GetValue(&number);
        else
            ExpectThrows<KAXMLRuntimeError>([&] { value.GetValue(&number); },
                                            L"Underflow or overflow while converting " + text + L" to " + outOf);
        EXPECT_TRUE(number == expected && errno == EDOM) << Narrow(text) << ' ' << number;
    }

    CKaSchema schema{L"Plant", L"pl", nullptr};
    CKaClass pump{L"Pump", &schema, nullptr};
    CKaProperty* flow = pump.AddKaProperty(L"Flow", L"double", L"");
    CKaValue value{flow, nullptr};
};

TEST_F(ValueTest, ReadsAndWritesNumbersAsTheRunTimeLibraryDoes) {
    const std::vector<std::pair<const wchar_t*, long>> longs = {
        {L"12abc", 12}, {L"", 0}, {L" \t-7", -7}, {L"0x1", 0}, {L"-2147483648", -2147483648L}};
    for (const auto& [text, number] : longs)
        ExpectRead(text, number);
    for (const wchar_t* const text : {L"2147483648", L"12345678901", L"99999999999999999999"})
        ExpectRead(text, 2147483647L, L"long");
    for (const wchar_t* const text : {L"-2147483649", L"-99999999999"})
        ExpectRead(text, -2147483648L, L"long");
    const std::vector<std::pair<const wchar_t*, double>> doubles = {
        {L" -1.5x", -1.5}, {L"", 0}, {L"1,5", 1}, {L"0x1p4", 16}, {L"-inf", -HUGE_VAL}, {L"Infinity", HUGE_VAL}};
    for (const auto& [text, number] : doubles)
        ExpectRead(text, number);
    ExpectRead(L"1e999", HUGE_VAL, L"a double");
    ExpectRead(L"-1e999", -HUGE_VAL, L"a double");
    ExpectRead(L"1e-999", 0., L"a double");
    const std::vector<std::pair<double, const wchar_t*>> written = {
        {1. / 3, L"0.333333333333333"}, {1e300, L"1e+300"}, {-2.5, L"-2.5"}, {1e15, L"1e+15"}, {1e-5, L"1e-05"}};
    for (const auto& [number, text] : written) {
        value.SetToNull();
        value.SetValue(number);
        EXPECT_TRUE(value.Value() == text && !value.IsNull()) << number;
    }
    ExpectThrows<KAXMLInvalidArgument>([&] { value.Reinitialize(nullptr); },
                                       L"Passed NULL pKaProperty to KaValueBase::Reinitialize");
    EXPECT_TRUE(value.IsNull() && value.PropertyName().empty() && value.GetProperty() == flow &&
                !value.Value().empty());
}

} // namespace
} // namespace KAXML::Test

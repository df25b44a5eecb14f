#include <kaxml/platform/numbers.h>

#include <cerrno>
#include <clocale>
#include <cmath>
#include <gtest/gtest.h>

namespace KAXML {
namespace {

TEST(Numbers, ReadIntegersAndKeepErrno) {
    const struct {
        const wchar_t* text;
        std::int32_t value;
        int error;
    } cases[] = {
        {L"0", 0, 0},
        {L"-12", -12, 0},
        {L" \t\n+7x", 7, 0},
        {L"", 0, 0},
        {L"abc", 0, 0},
        {L"0x10", 0, 0},
        {L"2147483647", 2147483647, 0},
        {L"2147483648", 2147483647, ERANGE},
        {L"-2147483648", -2147483647 - 1, 0},
        {L"-2147483649", -2147483647 - 1, ERANGE},
        {L"99999999999999999999", 2147483647, ERANGE},
        {L"-99999999999999999999", -2147483647 - 1, ERANGE},
    };
    for (const auto& each : cases) {
        errno = EDOM;
        const auto parsed = ParseInt32(each.text);
        EXPECT_EQ(parsed.value, each.value);
        EXPECT_EQ(parsed.error, each.error);
        EXPECT_EQ(errno, EDOM);
    }
}

TEST(Numbers, ReadUnsigned) {
    const struct {
        const wchar_t* text;
        std::uint32_t value;
        bool digitsRead;
    } cases[] = {
        {L"12.03", 12, true}, {L" +5", 5, true}, {L"-1", 4294967295u, true}, {L"", 0, false}, {L"x1", 0, false}};
    for (const auto& each : cases) {
        bool digitsRead = !each.digitsRead;
        EXPECT_EQ(ParseUInt32(each.text, digitsRead), each.value);
        EXPECT_EQ(digitsRead, each.digitsRead);
    }
}

TEST(Numbers, ReadAndWriteDoublesWithAPointInEveryLocale) {
    const struct {
        const wchar_t* text;
        double value;
        const wchar_t* written;
    } cases[] = {
        {L"1.5", 1.5, L"1.5"},
        {L"-0.1", -0.1, L"-0.1"},
        {L"1e300", 1e300, L"1e+300"},
        {L"1,5", 1, L"1"},
        {L"0.30000000000000004", 0.1 + 0.2, L"0.3"},
        {L"123456789012345678", 123456789012345678., L"1.23456789012346e+17"},
    };
    // Where one of these is installed, its decimal point is a comma.
    for (const char* const name : {"C", "de_DE.UTF-8", "fr_FR.UTF-8"}) {
        if (setlocale(LC_ALL, name) == nullptr)
            continue;
        for (const auto& each : cases) {
            EXPECT_EQ(ParseDouble(each.text).value, each.value);
            EXPECT_EQ(FormatDouble(each.value), each.written);
        }
    }
    setlocale(LC_ALL, "C");
    EXPECT_EQ(ParseDouble(L"1e999").error, ERANGE);
    EXPECT_TRUE(std::isinf(ParseDouble(L"1e999").value));
    EXPECT_EQ(FormatInt(-9223372036854775807LL - 1), L"-9223372036854775808");
}

} // namespace
} // namespace KAXML

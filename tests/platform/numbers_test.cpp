#include <kaxml/platform/numbers.h>

#include <cerrno>
#include <gtest/gtest.h>
#include <tuple>

namespace KAXML {
namespace {

TEST(Numbers, KeepTheirRangeAndErrno) {
    const std::int32_t lowest = -2147483647 - 1;
    const std::tuple<const wchar_t*, std::int32_t, int> cases[] = {
        {L"2147483648", 2147483647, ERANGE}, {L"-2147483648", lowest, 0}, {L"-2147483649", lowest, ERANGE}};
    for (const auto& [text, value, error] : cases) {
        errno = EDOM;
        const auto parsed = ParseInt32(text);
        EXPECT_EQ(std::tuple(parsed.value, parsed.error, errno), std::tuple(value, error, EDOM));
    }
    bool digitsRead = false;
    EXPECT_EQ(ParseUInt32(L"-1", digitsRead), 4294967295u);
    EXPECT_TRUE(digitsRead);
    EXPECT_EQ(FormatInt(-9223372036854775807LL - 1), L"-9223372036854775808");
}

} // namespace
} // namespace KAXML

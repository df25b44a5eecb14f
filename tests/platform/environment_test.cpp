#include <kaxml/platform/environment.h>

#include "platform/test_support.h"

namespace KAXML::Test {
namespace {

TEST(Environment, FindsTheTemporaryDirectory) {
    const std::string before = getenv("TMPDIR") != nullptr ? getenv("TMPDIR") : "";
    unsetenv("TMPDIR");
    EXPECT_EQ(GetTempPathW(), L"/tmp");
    setenv("TMPDIR", "", 1);
    EXPECT_EQ(GetTempPathW(), L"/tmp");
    before.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", before.c_str(), 1);
}

TEST(Environment, SearchesForBareNamesInTheirCase) {
    const TemporaryFolder folder;
    const std::wstring path = folder.Write("x.xml", "");
    const std::wstring base = WideFromUtf8(folder.Path().string());
    std::wstring found;
    for (const wchar_t* const name : {L"X.xml", L"", L"x.xml"})
        EXPECT_EQ(SearchPathW(base, name, found), *name == L'x') << found;
    EXPECT_FALSE(SearchPathW(L"/", path.substr(1), found));
}

} // namespace
} // namespace KAXML::Test

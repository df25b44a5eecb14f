#include <kaxml/platform/environment.h>

#include "platform/test_support.h"

namespace KAXML::Test {
namespace {

// Sets or removes a variable for one test.
class Variable {
  public:
    Variable(const char* name, const char* value) : m_name(name) {
        if (const char* const old = std::getenv(name))
            m_old = old;
        value != nullptr ? setenv(name, value, 1) : unsetenv(name);
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { m_old.empty() ? unsetenv(m_name) : setenv(m_name, m_old.c_str(), 1); }

  private:
    const char* m_name;
    std::string m_old;
};

TEST(Environment, TellsMissingVariablesFromEmptyOnes) {
    std::wstring value = L"kept";
    const Variable missing("KAXML_TEST_MISSING", nullptr);
    EXPECT_FALSE(GetEnvironmentVariableW("KAXML_TEST_MISSING", value));
    EXPECT_EQ(value, L"kept");
    const Variable empty("KAXML_TEST_EMPTY", "");
    EXPECT_TRUE(GetEnvironmentVariableW("KAXML_TEST_EMPTY", value));
    EXPECT_EQ(value, L"");
    const Variable text("KAXML_TEST_TEXT", "\xC3\xA9\xE9");
    EXPECT_TRUE(GetEnvironmentVariableW("KAXML_TEST_TEXT", value));
    EXPECT_EQ(value, L"\u00E9\uFFFD");
}

TEST(Environment, FindsTheTemporaryDirectory) {
    for (const auto& [value, expected] :
         {std::pair{"/some/where", L"/some/where"}, {"", L"/tmp"}, {static_cast<const char*>(nullptr), L"/tmp"}}) {
        const Variable variable("TMPDIR", value);
        EXPECT_EQ(GetTempPathW(), expected);
    }
}

TEST(Environment, SearchesDirectoriesInOrderForRegularFiles) {
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder / "one/x.xml");
    std::filesystem::create_directory(folder / "two");
    folder.Write("two/x.xml", "");
    folder.Write("x.xml", "");
    const std::wstring base = WideFromUtf8(folder.Path().string());
    const struct {
        std::wstring path, name, found; // nothing found: empty
    } cases[] = {
        {base + L"/two;" + base, L"x.xml", base + L"/two/x.xml"},
        {base + L"/two/;" + base, L"x.xml", base + L"/two/x.xml"},
        {base + L"/one;;" + base + L"/missing;" + base, L"x.xml", base + L"/x.xml"}, // a directory has the name in one
        {base + L"/two", L"X.xml", L""},
        {base, L"two/x.xml", L""},
        {base, L"", L""},
        {L"", L"x.xml", L""},
    };
    for (const auto& each : cases) {
        std::wstring found;
        EXPECT_EQ(SearchPathW(each.path, each.name, found), !each.found.empty());
        EXPECT_EQ(found, each.found);
    }
}

} // namespace
} // namespace KAXML::Test

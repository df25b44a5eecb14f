#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>
#include <locale>
#include <string>

namespace {

/// Runs the tests in the locale that KAXML_TEST_LOCALE names, set as a client does after loading the
/// library, and checks that it is still set at the end.
class LocaleEnvironment final : public testing::Environment {
    void SetUp() override {
        if (m_name == nullptr)
            return;
        ASSERT_NE(setlocale(LC_ALL, m_name), nullptr) << "there is no locale " << m_name;
        std::locale::global(std::locale(m_name));
        m_atStart = setlocale(LC_ALL, nullptr);
    }

    void TearDown() override {
        if (m_name == nullptr)
            return;
        EXPECT_EQ(setlocale(LC_ALL, nullptr), m_atStart);
        EXPECT_EQ(std::locale().name(), m_name);
    }

    const char* const m_name = std::getenv("KAXML_TEST_LOCALE");
    std::string m_atStart;
};

const testing::Environment* const s_environment = testing::AddGlobalTestEnvironment(new LocaleEnvironment);

} // namespace

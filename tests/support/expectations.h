#pragma once

#include <kaxml/kaxml.h>
#include <kaxml/platform/wide_text.h>

#include <gtest/gtest.h>
#include <string>
#include <typeinfo>
#include <vector>

/// What the tests of all concepts share.
namespace KAXML::Test {

inline std::string Narrow(std::wstring_view text) { return Utf8FromWide(text); }

/// Runs `run` and checks that it throws exactly this class (no derived one) with exactly these
/// texts. The one place where texts of exceptions are compared.
template <typename Exception, typename Run>
void ExpectThrows(Run run, std::wstring_view message, std::wstring_view location = L"") {
    try {
        run();
    } catch (const KAXMLException& error) {
        EXPECT_STREQ(typeid(Exception).name(), typeid(error).name());
        EXPECT_EQ(Narrow(message), Narrow(error.Message()));
        EXPECT_EQ(Narrow(location), Narrow(error.Location()));
        return;
    }
    ADD_FAILURE() << "nothing was thrown, expected: " << Narrow(message);
}

/// Takes note of what is logged while it lives.
class LogRecorder {
  public:
    struct Entry {
        int severity;
        std::wstring category;
        std::wstring message;
        bool operator==(const Entry&) const = default;
    };

    LogRecorder() {
        s_entries.clear();
        m_before = SetLoggingCallback(&Record);
    }
    LogRecorder(const LogRecorder&) = delete;
    LogRecorder& operator=(const LogRecorder&) = delete;
    ~LogRecorder() { SetLoggingCallback(m_before); }

    const std::vector<Entry>& Entries() const { return s_entries; }

    /// The messages of one severity, in order.
    std::vector<std::wstring> Messages(int severity) const {
        std::vector<std::wstring> messages;
        for (const Entry& entry : s_entries)
            if (entry.severity == severity)
                messages.push_back(entry.message);
        return messages;
    }

  private:
    static void Record(LOG_SEV severity, const wchar_t* category, const wchar_t* message) {
        s_entries.push_back({severity, category, message});
    }
    inline static std::vector<Entry> s_entries;
    LoggingCallback m_before;
};

} // namespace KAXML::Test

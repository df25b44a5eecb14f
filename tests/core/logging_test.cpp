#include "support/expectations.h"

#include <kaxml/kaxml/core/log_message.h>

namespace KAXML::Test {
namespace {

TEST(Logging, DeliversSeveritiesInRangeAndTextsVerbatimButCut) {
    const LogRecorder log;
    std::vector<LogRecorder::Entry> expected;
    for (const int severity : {7, 0, -1, -4, -5}) {
        Log(static_cast<LOG_SEV>(severity), L"Mine", L"%s 100% %n");
        if (severity >= -4)
            expected.push_back({std::min(severity, -1), L"Mine", L"%s 100% %n"});
    }
    for (const std::size_t length : {2047u, 2048u, 9000u}) {
        Log(LOG_INFO, L"", std::wstring(length, L'\u00E9'));
        expected.push_back({LOG_INFO, L"", std::wstring(2047, L'\u00E9')});
    }
    LogMessage(LOG_INFO, nullptr, L"text");
    LogMessage(LOG_INFO, L"category", nullptr);
    LogFormatted(LOG_WARNING, L"%s|%S|%i|%d|%", {L"%s wide", "narrow \xC3\xA9", -7, 4294967295u});
    expected.push_back({LOG_INFO, L"?", L"text"});
    expected.push_back({LOG_WARNING, L"KAXML", L"%s wide|narrow \u00E9|-7|4294967295|%"});
    EXPECT_EQ(log.Entries(), expected);
}

std::wstring s_outer;
void Nesting(LOG_SEV severity, const wchar_t*, const wchar_t* message) {
    if (severity != LOG_ERROR)
        throw 5;
    Log(LOG_TRACE, L"", L"inner, and longer than the outer one");
    s_outer = message;
}

TEST(Logging, SurvivesACallbackThatLogsAndThrows) {
    const LoggingCallback before = SetLoggingCallback(&Nesting);
    ExpectThrows<KAXMLLogicError>([] { throw KAXMLLogicError(L"outer"); }, L"outer");
    EXPECT_EQ(SetLoggingCallback(before), &Nesting);
    EXPECT_EQ(s_outer, L"outer");
}

} // namespace
} // namespace KAXML::Test

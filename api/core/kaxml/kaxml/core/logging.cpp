#include <kaxml/kaxml/core/log_message.h>

#include <kaxml/platform/wide_text.h>

#include <algorithm>
#include <atomic>
#include <cwchar>

namespace KAXML {

namespace {

constexpr int kMinimumSeverity = LOG_TRACE;

std::atomic<LoggingCallback> s_callback{nullptr};

} // namespace

LoggingCallback SetLoggingCallback(LoggingCallback callback) noexcept { return s_callback.exchange(callback); }

bool IsLogging() noexcept { return s_callback.load() != nullptr; }

void LogMessage(LOG_SEV severity, const wchar_t* category, const wchar_t* text) noexcept {
    // Read once: another thread may take the callback away meanwhile.
    const LoggingCallback callback = s_callback.load();
    if (callback == nullptr || severity < kMinimumSeverity || text == nullptr)
        return;
    // A buffer of the call's own: the callback may log in turn, on this or another thread.
    wchar_t buffer[kLogBufferSize];
    const std::wstring_view whole(text);
    buffer[whole.copy(buffer, WholeLength(whole, kLogBufferSize - 1))] = L'\0';
    try {
        callback(std::min(severity, LOG_ERROR), category == nullptr ? L"?" : category, buffer);
    } catch (...) { // NOLINT(bugprone-empty-catch): logging never disturbs what logged
    }
}

void LogFormatted(LOG_SEV severity, std::wstring_view format,
                  std::initializer_list<FormatArgument> arguments) noexcept {
    if (!IsLogging())
        return;
    try {
        LogMessage(severity, L"KAXML", FormatText(format, arguments).c_str());
    } catch (...) { // NOLINT(bugprone-empty-catch): no memory for the message
    }
}

void Log(LOG_SEV severity, const std::wstring& category, const std::wstring& message) noexcept {
    LogMessage(severity, category.c_str(), message.c_str());
}

} // namespace KAXML

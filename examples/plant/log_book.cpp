#include "log_book.h"

#include <mutex>
#include <utility>

namespace plant {
namespace {

// The callback gets no context, so what it fills has to be here. The library may call it on any
// thread.
std::mutex entriesMutex;
std::vector<LogEntry> entries;

void Record(KAXML::LOG_SEV severity, const wchar_t* category, const wchar_t* message) {
    const std::lock_guard<std::mutex> lock(entriesMutex);
    entries.push_back({severity, category, message});
}

} // namespace

LogBook::LogBook() : m_before(KAXML::SetLoggingCallback(&Record)) {}

LogBook::~LogBook() { KAXML::SetLoggingCallback(m_before); }

std::vector<LogEntry> LogBook::Take() {
    const std::lock_guard<std::mutex> lock(entriesMutex);
    return std::exchange(entries, {});
}

} // namespace plant

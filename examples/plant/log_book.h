#pragma once

#include <kaxml/kaxml.h>

#include <string>
#include <vector>

namespace plant {

/// One message of the library.
struct LogEntry {
    KAXML::LOG_SEV severity;
    std::wstring category;
    std::wstring message;
};

/// Keeps what the library logs, from construction to destruction. One at a time: the library has
/// one callback per process.
class LogBook {
  public:
    LogBook();
    ~LogBook();
    LogBook(const LogBook&) = delete;
    LogBook& operator=(const LogBook&) = delete;

    /// What was logged since the last call.
    std::vector<LogEntry> Take();

  private:
    KAXML::LoggingCallback m_before;
};

} // namespace plant

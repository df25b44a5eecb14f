#pragma once

#include <kaxml/platform/export.h>

#include <string>

/// @file
/// Diagnostics: progress notes, warnings and a copy of every exception's text go to one callback
/// that the client installs for the process. Without it nothing is logged.
///
/// @code
/// void Print(KAXML::LOG_SEV severity, const wchar_t* category, const wchar_t* message) {
///     std::wcerr << severity << L' ' << category << L": " << message << L'\n';
/// }
/// KAXML::LoggingCallback before = KAXML::SetLoggingCallback(&Print);
/// @endcode

namespace KAXML {

/// Severities, most severe first.
enum LOG_SEV : int {
    LOG_ERROR = -1,   ///< every exception; schema files that cannot be used
    LOG_WARNING = -2, ///< conversion trouble, ignored attributes, what a saved file cannot carry
    LOG_INFO = -3,    ///< summaries and skip notices of the instance reader
    LOG_TRACE = -4    ///< progress of the readers, class by class
};

/// Receives one message. Both texts are never null and valid during the call only. What the
/// callback throws is discarded. It may be called on any thread that uses the library, from
/// several at once, and may itself use the library.
typedef void (*LoggingCallback)(LOG_SEV severity, const wchar_t* category, const wchar_t* message);

/// Installs the callback of the process; null turns logging off. Returns the one installed before,
/// null at first. Safe to call on any thread at any time.
KAXML_API LoggingCallback SetLoggingCallback(LoggingCallback callback) noexcept;

/// Sends a message to the callback. Severities above LOG_ERROR are delivered as LOG_ERROR, those
/// below LOG_TRACE are dropped; texts longer than 2047 characters are cut. Never throws.
KAXML_API void Log(LOG_SEV severity, const std::wstring& category, const std::wstring& message) noexcept;

} // namespace KAXML

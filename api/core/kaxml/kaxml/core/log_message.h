#pragma once

#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/core/logging.h>

#include <cstddef>

namespace KAXML {

/// Characters of the delivery buffer, terminator included.
inline constexpr std::size_t kLogBufferSize = 2048;

/// Whether a callback is installed: work that only serves the log is otherwise left out.
bool IsLogging() noexcept;

/// The one place that calls the logging callback. Category and text may be null. The text is
/// delivered verbatim, cut to the buffer.
void LogMessage(LOG_SEV severity, const wchar_t* category, const wchar_t* text) noexcept;

/// Logs a formatted text (see FormatText) under the category "KAXML". Nothing is formatted while
/// no callback is installed.
void LogFormatted(LOG_SEV severity, std::wstring_view format, std::initializer_list<FormatArgument> arguments) noexcept;

} // namespace KAXML

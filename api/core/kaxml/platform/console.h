#pragma once

#include <string_view>

namespace KAXML {

/// Writes a text, as UTF-8 bytes, to the process's standard output and flushes it. What the client
/// wrote through the stream before comes first, and the stream's orientation stays undecided: the
/// bytes go past it. Failures are ignored.
void WriteStandardOutput(std::wstring_view text);

} // namespace KAXML

#pragma once

#include <string>
#include <string_view>

/// @file
/// The process's surroundings. Narrow text of the system is taken as UTF-8.

namespace KAXML {

/// Sets `directory` to the current directory. Returns false when the system has none to give.
bool GetCurrentDirectoryW(std::wstring& directory);

/// Sets `value` to an environment variable's text (perhaps empty). Returns false when it does not
/// exist.
bool GetEnvironmentVariableW(const char* name, std::wstring& value);

/// The directory for temporary files: TMPDIR, else /tmp.
std::wstring GetTempPathW();

/// Separates directory and file name.
inline constexpr wchar_t kPathSeparator = L'/';

/// Searches a list of directories separated by ";" for a regular file of exactly this name and
/// sets `found` to the first one's path. Empty directory entries are skipped. A name that holds a
/// path separator is the name of no file.
bool SearchPathW(std::wstring_view searchPath, std::wstring_view fileName, std::wstring& found);

} // namespace KAXML

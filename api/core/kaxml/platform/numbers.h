#pragma once

#include <cstdint>
#include <string>

/// @file
/// Conversion between numbers and text, by the rules of the C locale whatever the process has set.

namespace KAXML {

/// Result of reading a number: the value (clamped when out of range) and the system error, 0 or
/// for example ERANGE.
template <typename Number> struct ParsedNumber {
    Number value;
    int error;
};

/// Reads a decimal 32-bit integer as `wcstol` does: leading white space and a sign are accepted,
/// reading stops at the first character that is no digit, a text without digits gives 0.
ParsedNumber<std::int32_t> ParseInt32(const wchar_t* text);

/// Reads a floating-point number as `wcstod` does, with "." as decimal point.
ParsedNumber<double> ParseDouble(const wchar_t* text);

/// Reads an unsigned decimal number as `wcstoul` does (white space and a sign are accepted, the
/// result is reduced to 32 bits). `digitsRead` tells whether there was a number at all.
std::uint32_t ParseUInt32(const wchar_t* text, bool& digitsRead);

/// The number as "%d" formats it.
std::wstring FormatInt(long long value);

/// The number as "%.15g" formats it in the C locale.
std::wstring FormatDouble(double value);

} // namespace KAXML

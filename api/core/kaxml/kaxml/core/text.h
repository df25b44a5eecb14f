#pragma once

#include <kaxml/platform/export.h>
#include <kaxml/platform/guid.h>

#include <string>

/// @file
/// Text utilities. They keep no state and may run on several threads at once; none depends on the
/// process's locale.
///
/// @code
/// std::wstring escaped;
/// KAXML::ConvertToXmlString(L"a < b", escaped);      // "a &lt; b"
/// std::wstring tag = L"Flow rate";
/// KAXML::EncodeToValidXmlTag(tag);                   // "Flow__x0020__rate", returns 1
/// KAXML::DecodeFromValidXmlTag(tag);                 // "Flow rate" again, returns 1
/// @endcode

namespace KAXML {

/// The value in decimal. @throws KAXMLInvalidArgument for a value outside the 32-bit range.
KAXML_API std::wstring ToWString(long value);
/// The value in decimal.
KAXML_API std::wstring ToWString(int value);
/// The text of UTF-8 bytes up to the first NUL; malformed bytes become U+FFFD. Null gives an empty
/// text.
KAXML_API std::wstring ToWString(const char* text);
/// The 36-character form of a GUID (lowercase hexadecimal, groups 8-4-4-4-12, no braces); empty
/// for null.
KAXML_API std::wstring ToWString(const GUID* guid);

/// Replaces `output` by the text escaped for XML: printable ASCII, tab, line feed and carriage
/// return stand, markup characters become entities, every other character a numeric reference.
/// What XML cannot hold (other controls, U+FFFE, U+FFFF, lone surrogates) and each half of a
/// character above U+FFFF become a question mark.
/// @param text    null-terminated, not null (KAXMLInvalidArgument). May be output's own text.
/// @param output  unchanged when the call throws.
KAXML_API void ConvertToXmlString(const wchar_t* text, std::wstring& output);

/// Makes a name usable as an element's name: every character that is no letter, digit or
/// underscore, and a digit in front, becomes a token like "__x0020__" (a character above U+FFFF
/// two tokens). Returns 1 if anything was encoded, else 0. The name is unchanged when the call
/// throws (no memory).
KAXML_API int EncodeToValidXmlTag(std::wstring& name);

/// Turns the tokens of EncodeToValidXmlTag back into characters; two adjacent tokens that form a
/// surrogate pair give the one character back. Returns 1 if anything was decoded, else 0.
KAXML_API int DecodeFromValidXmlTag(std::wstring& name);

} // namespace KAXML

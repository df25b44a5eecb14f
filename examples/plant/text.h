#pragma once

#include <string>
#include <string_view>

/// @file
/// Text between the library, where it is wide, and the outside, where it is UTF-8 or XML.

namespace plant {

/// The UTF-8 bytes of wide text; half a surrogate pair becomes U+FFFD.
std::string Utf8(std::wstring_view text);

/// Text for an XML document, as element content or between quotes. Parsing it gives the same text
/// back, which the library's ConvertToXmlString alone does not promise: XML readers turn a carriage
/// return into a line feed and, in attributes, a line feed into a blank, and characters above
/// U+FFFF become question marks.
std::wstring EscapeXml(std::wstring_view text);

/// Text for one line of output: control characters become blanks, what is too long is cut.
std::wstring OneLine(std::wstring_view text, std::size_t maximum = 100);

} // namespace plant

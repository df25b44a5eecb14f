#pragma once

#include <kaxml/platform/wide_text.h>

#include <string>
#include <string_view>

/// @file
/// The escaping of text for XML, for either width of a wide character.

namespace KAXML {

/// The name of the entity that stands for a character of markup; empty for any other.
inline constexpr std::string_view MarkupEntity(char32_t unit) noexcept {
    switch (unit) {
    case U'&':
        return "&amp;";
    case U'>':
        return "&gt;";
    case U'<':
        return "&lt;";
    case U'"':
        return "&quot;";
    case U'\'':
        return "&apos;";
    default:
        return {};
    }
}

template <typename Char> void AppendAscii(std::basic_string<Char>& output, std::string_view ascii) {
    for (const char c : ascii)
        output += static_cast<Char>(c);
}

template <typename Char> void AppendCharacterReference(std::basic_string<Char>& output, char32_t unit) {
    AppendAscii(output, "&#x");
    int shift = 12;
    while (shift > 0 && (unit >> shift) == 0)
        shift -= 4;
    for (; shift >= 0; shift -= 4)
        output += static_cast<Char>("0123456789ABCDEF"[(unit >> shift) & 0xF]);
    output += static_cast<Char>(';');
}

template <typename Char> void AppendEscaped(std::basic_string<Char>& output, char32_t unit) {
    if (const std::string_view entity = MarkupEntity(unit); !entity.empty())
        AppendAscii(output, entity);
    else if ((unit >= 32 && unit <= 126) || unit == 9 || unit == 10 || unit == 13)
        output += static_cast<Char>(unit);
    else if (unit < 32 || IsSurrogate(unit) || unit > 0xFFFD)
        output += static_cast<Char>('?');
    else
        AppendCharacterReference(output, unit);
}

/// The text in plain ASCII: markup as entities, other characters as references to their numbers, and
/// a question mark for each unit that XML cannot hold or that is half of a character.
template <typename Char> std::basic_string<Char> EscapeForXml(std::basic_string_view<Char> text) {
    std::basic_string<Char> escaped;
    escaped.reserve(text.size());
    ForEachUtf16Unit(text, [&escaped](char32_t unit) { AppendEscaped(escaped, unit); });
    return escaped;
}

} // namespace KAXML

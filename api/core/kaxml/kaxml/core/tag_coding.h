#pragma once

#include <kaxml/platform/char_class.h>
#include <kaxml/platform/wide_text.h>

#include <optional>
#include <string>

/// @file
/// The coding of names as element names, for either width of a wide character.

namespace KAXML {

inline constexpr std::size_t kTagTokenLength = 9; // "__x" + four digits + "__"

template <typename Char> void AppendTagToken(std::basic_string<Char>& text, char32_t unit) {
    for (const char c : {'_', '_', 'x'})
        text += static_cast<Char>(c);
    for (int shift = 12; shift >= 0; shift -= 4)
        text += static_cast<Char>("0123456789abcdef"[(unit >> shift) & 0xF]);
    text += static_cast<Char>('_');
    text += static_cast<Char>('_');
}

template <typename Char> int EncodeTag(std::basic_string<Char>& name) {
    std::basic_string<Char> encoded;
    bool first = true;
    int changed = 0;
    ForEachUtf16Unit(std::basic_string_view<Char>(name), [&](char32_t unit) {
        const auto character = static_cast<wchar_t>(unit);
        const bool stays = unit == U'_' || (first ? IsLetter(character) : IsLetterOrDigit(character));
        first = false;
        if (stays) {
            encoded += static_cast<Char>(unit);
        } else {
            AppendTagToken(encoded, unit);
            changed = 1;
        }
    });
    name.swap(encoded);
    return changed;
}

/// The code of the token at `position`, if there is one.
template <typename Char>
std::optional<char32_t> TagTokenAt(const std::basic_string<Char>& name, std::size_t position) noexcept {
    if (name.size() < position || name.size() - position < kTagTokenLength)
        return std::nullopt;
    const auto at = [&](std::size_t i) { return static_cast<char32_t>(name[position + i]); };
    if (at(0) != U'_' || at(1) != U'_' || at(2) != U'x' || at(7) != U'_' || at(8) != U'_')
        return std::nullopt;
    char32_t code = 0;
    for (std::size_t i = 3; i < 7; ++i) {
        const char32_t c = at(i);
        if (c >= U'0' && c <= U'9')
            code = code * 16 + (c - U'0');
        else if (c >= U'a' && c <= U'f')
            code = code * 16 + (c - U'a' + 10);
        else if (c >= U'A' && c <= U'F')
            code = code * 16 + (c - U'A' + 10);
        else
            return std::nullopt;
    }
    return code;
}

template <typename Char> int DecodeTag(std::basic_string<Char>& name) {
    // One pass from left to right into a new text. A decoded character is never part of a later
    // token's front: tokens begin with an underscore, and the search goes on behind the character.
    std::basic_string<Char> decoded;
    int changed = 0;
    std::size_t position = 0;
    while (position < name.size()) {
        const std::optional<char32_t> code = TagTokenAt(name, position);
        if (!code) {
            decoded += name[position++];
            continue;
        }
        changed = 1;
        position += kTagTokenLength;
        const std::optional<char32_t> next = IsHighSurrogate(*code) ? TagTokenAt(name, position) : std::nullopt;
        if (next && IsLowSurrogate(*next)) {
            AppendCodePoint(decoded, CombineSurrogates(*code, *next));
            position += kTagTokenLength;
        } else if (*code != 0) {
            AppendCodePoint(decoded, *code);
        } else if (position < name.size()) {
            // The token of no character vanishes, and the search goes on one character further.
            decoded += name[position++];
        }
    }
    name.swap(decoded);
    return changed;
}

} // namespace KAXML

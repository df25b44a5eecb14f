#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// @file
/// The one place that knows how wide a wide character is. Text is made of characters (code points);
/// where `wchar_t` has 16 bits a character above U+FFFF takes two of them. Everything here is a
/// template over the character type, so both widths are tested in one build.

namespace KAXML {

inline constexpr bool IsHighSurrogate(char32_t unit) noexcept { return unit >= 0xD800 && unit <= 0xDBFF; }
inline constexpr bool IsLowSurrogate(char32_t unit) noexcept { return unit >= 0xDC00 && unit <= 0xDFFF; }
inline constexpr bool IsSurrogate(char32_t unit) noexcept { return unit >= 0xD800 && unit <= 0xDFFF; }

inline constexpr char32_t CombineSurrogates(char32_t high, char32_t low) noexcept {
    return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}
inline constexpr char32_t HighSurrogate(char32_t codePoint) noexcept { return 0xD800 + ((codePoint - 0x10000) >> 10); }
inline constexpr char32_t LowSurrogate(char32_t codePoint) noexcept { return 0xDC00 + ((codePoint - 0x10000) & 0x3FF); }

/// Takes the character at `p` (p < end) and moves `p` past it. A surrogate that has no partner is
/// returned as it stands.
template <typename Char> constexpr char32_t NextCodePoint(const Char*& p, const Char* end) noexcept {
    const auto first = static_cast<char32_t>(*p++);
    if constexpr (sizeof(Char) == 2) {
        if (IsHighSurrogate(first & 0xFFFF) && p != end && IsLowSurrogate(static_cast<char32_t>(*p) & 0xFFFF))
            return CombineSurrogates(first & 0xFFFF, static_cast<char32_t>(*p++) & 0xFFFF);
        return first & 0xFFFF;
    }
    return first;
}

/// Appends one character.
template <typename Char> void AppendCodePoint(std::basic_string<Char>& text, char32_t codePoint) {
    if constexpr (sizeof(Char) == 2) {
        if (codePoint > 0xFFFF) {
            text += static_cast<Char>(HighSurrogate(codePoint));
            text += static_cast<Char>(LowSurrogate(codePoint));
            return;
        }
    }
    text += static_cast<Char>(codePoint);
}

/// Calls `use(unit)` with each 16-bit unit of the text: a character above U+FFFF counts as its
/// surrogate pair, whatever the width of Char.
template <typename Char, typename Use> void ForEachUtf16Unit(std::basic_string_view<Char> text, Use use) {
    for (const Char c : text) {
        const auto unit = static_cast<char32_t>(c);
        if (sizeof(Char) > 2 && unit > 0xFFFF) {
            use(HighSurrogate(unit));
            use(LowSurrogate(unit));
        } else {
            use(sizeof(Char) == 2 ? (unit & 0xFFFF) : unit);
        }
    }
}

/// Appends UTF-8 text as wide text. Malformed bytes become U+FFFD, one for each byte that starts
/// no character. Text that is plain ASCII is copied on a short path.
void AppendUtf8AsWide(std::wstring& wide, std::string_view utf8);

/// Wide text of a UTF-8 text; malformed bytes become U+FFFD.
std::wstring WideFromUtf8(std::string_view utf8);

/// Appends the UTF-8 form of one character. Lone surrogates get the three bytes that UTF-8 would
/// give them and values above U+10FFFF a byte 0xFF, so that a reader refuses both.
void AppendUtf8(std::string& utf8, char32_t codePoint);

/// UTF-8 form of a wide text, for file names and system calls: what is no character becomes U+FFFD.
std::string Utf8FromWide(std::wstring_view wide);

} // namespace KAXML

#pragma once

#include <kaxml/platform/ascii_copy.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cwchar>
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
/// surrogate pair, whatever the width of Char, and a value beyond all characters as U+FFFF, which is
/// none either.
template <typename Char, typename Use> void ForEachUtf16Unit(std::basic_string_view<Char> text, Use use) {
    for (const Char c : text) {
        const auto unit = static_cast<char32_t>(c);
        if (sizeof(Char) > 2 && unit > 0x10FFFF) {
            use(char32_t{0xFFFF});
        } else if (sizeof(Char) > 2 && unit > 0xFFFF) {
            use(HighSurrogate(unit));
            use(LowSurrogate(unit));
        } else {
            use(sizeof(Char) == 2 ? (unit & 0xFFFF) : unit);
        }
    }
}

/// The length of the longest front of a text that has at most `limit` units and does not end
/// between the two halves of a surrogate pair.
template <typename Char> std::size_t WholeLength(std::basic_string_view<Char> text, std::size_t limit) noexcept {
    if (text.size() <= limit)
        return text.size();
    const auto unit = [text](std::size_t i) { return static_cast<char32_t>(text[i]) & 0xFFFF; };
    const bool splits =
        sizeof(Char) == 2 && limit > 0 && IsHighSurrogate(unit(limit - 1)) && IsLowSurrogate(unit(limit));
    return splits ? limit - 1 : limit;
}

/// Length of the well-formed UTF-8 sequence at `p` (p < end), or 0. Overlong forms, surrogates and
/// values above U+10FFFF are not well formed.
int Utf8SequenceLength(const unsigned char* p, const unsigned char* end) noexcept;

/// Takes the character at `p` (p < end) and moves `p` past it. A byte that starts no character is
/// taken as U+FFFD.
char32_t NextUtf8CodePoint(const unsigned char*& p, const unsigned char* end) noexcept;

/// Appends the ASCII characters at the front of `from`, at most a block of them, and returns how many
/// there were.
template <typename To, typename From>
std::size_t AppendAscii(std::basic_string<To>& text, const From* from, std::size_t length) {
    std::array<To, 256> block;
    length = CopyAscii(from, std::min(length, block.size()), block.data());
    text.append(block.data(), length);
    return length;
}

/// Appends UTF-8 text as wide text. Malformed bytes become U+FFFD, one for each byte that starts
/// no character. Text that is plain ASCII is copied on a short path.
template <typename Char> void AppendUtf8AsWide(std::basic_string<Char>& wide, std::string_view utf8) {
    wide.reserve(wide.size() + utf8.size()); // a long text is not moved while it grows
    const auto* p = reinterpret_cast<const unsigned char*>(utf8.data());
    const auto* const end = p + utf8.size();
    while (p != end) {
        p += AppendAscii(wide, p, static_cast<std::size_t>(end - p));
        while (p != end && *p >= 0x80)
            AppendCodePoint(wide, NextUtf8CodePoint(p, end));
    }
}

/// Wide text of a UTF-8 text; malformed bytes become U+FFFD.
std::wstring WideFromUtf8(std::string_view utf8);

/// Appends the UTF-8 form of one character. Lone surrogates get the three bytes that UTF-8 would
/// give them and values above U+10FFFF a byte 0xFF, so that a reader refuses both.
void AppendUtf8(std::string& utf8, char32_t codePoint);

/// Appends the UTF-8 form of a wide text; what is no character becomes U+FFFD.
template <typename Char> void AppendWideAsUtf8(std::string& utf8, std::basic_string_view<Char> wide) {
    const Char* p = wide.data();
    const Char* const end = p + wide.size();
    while (p != end) {
        const char32_t c = NextCodePoint(p, end);
        AppendUtf8(utf8, IsSurrogate(c) || c > 0x10FFFF ? 0xFFFD : c);
    }
}

/// UTF-8 form of a wide text, for file names and system calls: what is no character becomes U+FFFD.
std::string Utf8FromWide(std::wstring_view wide);

/// The length of a null-terminated text, or `limit` when it is longer.
template <typename Char> std::size_t LengthUpTo(const Char* text, std::size_t limit) noexcept {
    if constexpr (std::is_same_v<Char, wchar_t>)
        return wcsnlen(text, limit);
    std::size_t length = 0;
    while (length < limit && text[length] != Char())
        ++length;
    return length;
}

/// Takes up to `limit` units off the front of a null-terminated text, and one more where that would
/// split a character, and appends their UTF-8 form. Returns 0, or what it met that is no character, at
/// which it ends.
template <typename Char> char32_t TakeAsUtf8(std::string& utf8, const Char*& text, std::size_t limit) {
    const Char* const end = text + LengthUpTo(text, limit);
    while (text < end) {
        text += AppendAscii(utf8, text, static_cast<std::size_t>(end - text));
        while (text < end && static_cast<char32_t>(*text) >= 0x80) {
            // Behind any unit before the closing null there is one more to look at.
            const char32_t c = NextCodePoint(text, text + 2);
            if (IsSurrogate(c) || c > 0x10FFFF)
                return c;
            AppendUtf8(utf8, c);
        }
    }
    return 0;
}

} // namespace KAXML

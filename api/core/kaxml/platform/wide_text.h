#pragma once

#include <algorithm>
#include <cstddef>
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

/// Appends UTF-8 text as wide text. Malformed bytes become U+FFFD, one for each byte that starts
/// no character. Text that is plain ASCII is copied on a short path.
template <typename Char> void AppendUtf8AsWide(std::basic_string<Char>& wide, std::string_view utf8) {
    const auto* p = reinterpret_cast<const unsigned char*>(utf8.data());
    const auto* const end = p + utf8.size();
    while (p != end) {
        const auto* const asciiBegin = p;
        while (p != end && *p < 0x80)
            ++p;
        const std::size_t begin = wide.size();
        wide.resize(begin + static_cast<std::size_t>(p - asciiBegin));
        std::copy(asciiBegin, p, wide.begin() + static_cast<std::ptrdiff_t>(begin));
        if (p != end)
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

/// How many of the text's first `limit` units, at most, are ASCII and not null.
template <typename Char> std::size_t AsciiLength(const Char* text, std::size_t limit) noexcept {
    std::size_t length = 0;
    while (length < limit && static_cast<char32_t>(text[length]) - 1 < 0x7F)
        ++length;
    return length;
}

/// Takes up to `limit` characters off the front of a null-terminated text and appends their UTF-8
/// form. Returns 0, or what it met that is no character, at which it ends.
template <typename Char> char32_t TakeAsUtf8(std::string& utf8, const Char*& text, std::size_t limit) {
    for (;;) {
        const std::size_t length = AsciiLength(text, limit);
        const std::size_t begin = utf8.size();
        utf8.resize(begin + length);
        std::transform(text, text + length, utf8.begin() + static_cast<std::ptrdiff_t>(begin),
                       [](Char c) { return static_cast<char>(c); });
        text += length;
        limit -= length;
        if (limit == 0 || *text == Char())
            return 0;
        // Behind any unit before the closing null there is one more to look at.
        const char32_t c = NextCodePoint(text, text + 2);
        if (IsSurrogate(c) || c > 0x10FFFF)
            return c;
        AppendUtf8(utf8, c);
        --limit;
    }
}

} // namespace KAXML

#include "text.h"

#include <kaxml/kaxml.h>

namespace plant {
namespace {

bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// The character at the position, which moves behind it. Where wchar_t has 16 bits, two of them can
// make one character.
char32_t NextCharacter(std::wstring_view text, std::size_t& position) {
    const auto first = static_cast<char32_t>(text[position++]);
    if (IsHighSurrogate(first) && position < text.size()) {
        const auto second = static_cast<char32_t>(text[position]);
        if (IsLowSurrogate(second)) {
            ++position;
            return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
        }
    }
    return IsHighSurrogate(first) || IsLowSurrogate(first) ? 0xFFFD : first;
}

void AppendUtf8(std::string& bytes, char32_t c) {
    const auto append = [&bytes](char32_t byte) { bytes += static_cast<char>(byte); };
    const auto appendTail = [&](int shift) { append(0x80 | ((c >> shift) & 0x3F)); };
    if (c < 0x80) {
        append(c);
    } else if (c < 0x800) {
        append(0xC0 | (c >> 6));
        appendTail(0);
    } else if (c < 0x10000) {
        append(0xE0 | (c >> 12));
        appendTail(6);
        appendTail(0);
    } else {
        append(0xF0 | (c >> 18));
        appendTail(12);
        appendTail(6);
        appendTail(0);
    }
}

} // namespace

std::string Utf8(std::wstring_view text) {
    std::string bytes;
    for (std::size_t position = 0; position < text.size();)
        AppendUtf8(bytes, NextCharacter(text, position));
    return bytes;
}

std::wstring EscapeXml(std::wstring_view text) {
    std::wstring escaped, plain, piece;
    const auto flush = [&] {
        KAXML::ConvertToXmlString(plain.c_str(), piece);
        escaped += piece;
        plain.clear();
    };
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t start = position;
        const char32_t c = NextCharacter(text, position);
        if (c > 0xFFFF || c == U'\t' || c == U'\n' || c == U'\r') {
            flush();
            escaped += L"&#" + std::to_wstring(static_cast<unsigned long>(c)) + L";";
        } else {
            plain += text.substr(start, position - start);
        }
    }
    flush();
    return escaped;
}

std::wstring OneLine(std::wstring_view text, std::size_t maximum) {
    std::wstring line(text.substr(0, maximum));
    for (wchar_t& c : line)
        if (c < L' ')
            c = L' ';
    if (text.size() > maximum)
        line += L"...";
    return line;
}

} // namespace plant

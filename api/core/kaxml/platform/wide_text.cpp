#include <kaxml/platform/wide_text.h>

namespace KAXML {

namespace {

char32_t Decode(const unsigned char* p, int length) noexcept {
    switch (length) {
    case 1:
        return p[0];
    case 2:
        return static_cast<char32_t>((p[0] & 0x1F) << 6 | (p[1] & 0x3F));
    case 3:
        return static_cast<char32_t>((p[0] & 0x0F) << 12 | (p[1] & 0x3F) << 6 | (p[2] & 0x3F));
    default:
        return static_cast<char32_t>((p[0] & 0x07) << 18 | (p[1] & 0x3F) << 12 | (p[2] & 0x3F) << 6 | (p[3] & 0x3F));
    }
}

} // namespace

int Utf8SequenceLength(const unsigned char* p, const unsigned char* end) noexcept {
    const unsigned char lead = p[0];
    const auto left = end - p;
    const auto continues = [p](int i) { return (p[i] & 0xC0) == 0x80; };
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return left >= 2 && continues(1) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        if (left < 3 || !continues(1) || !continues(2))
            return 0;
        if ((lead == 0xE0 && p[1] < 0xA0) || (lead == 0xED && p[1] > 0x9F))
            return 0;
        return 3;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        if (left < 4 || !continues(1) || !continues(2) || !continues(3))
            return 0;
        if ((lead == 0xF0 && p[1] < 0x90) || (lead == 0xF4 && p[1] > 0x8F))
            return 0;
        return 4;
    }
    return 0;
}

char32_t NextUtf8CodePoint(const unsigned char*& p, const unsigned char* end) noexcept {
    const int length = Utf8SequenceLength(p, end);
    const char32_t c = length == 0 ? 0xFFFD : Decode(p, length);
    p += length == 0 ? 1 : length;
    return c;
}

std::wstring WideFromUtf8(std::string_view utf8) {
    std::wstring wide;
    wide.reserve(utf8.size());
    AppendUtf8AsWide(wide, utf8);
    return wide;
}

void AppendUtf8(std::string& utf8, char32_t codePoint) {
    const auto tail = [&utf8, codePoint](int shift) {
        utf8 += static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
    };
    if (codePoint < 0x80) {
        utf8 += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        utf8 += static_cast<char>(0xC0 | (codePoint >> 6));
        tail(0);
    } else if (codePoint < 0x10000) {
        utf8 += static_cast<char>(0xE0 | (codePoint >> 12));
        tail(6);
        tail(0);
    } else if (codePoint <= 0x10FFFF) {
        utf8 += static_cast<char>(0xF0 | (codePoint >> 18));
        tail(12);
        tail(6);
        tail(0);
    } else {
        utf8 += static_cast<char>(0xFF);
    }
}

std::string Utf8FromWide(std::wstring_view wide) {
    std::string utf8;
    utf8.reserve(wide.size());
    AppendWideAsUtf8(utf8, wide);
    return utf8;
}

} // namespace KAXML

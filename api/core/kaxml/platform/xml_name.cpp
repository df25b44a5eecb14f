#include <kaxml/platform/xml_name.h>

#include <kaxml/platform/wide_text.h>

#include <algorithm>
#include <iterator>

namespace KAXML {

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

constexpr Range kNameStart[] = {
    {'A', 'Z'},       {'_', '_'},       {'a', 'z'},       {0xC0, 0xD6},     {0xD8, 0xF6},
    {0xF8, 0x2FF},    {0x370, 0x37D},   {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F},
    {0x2C00, 0x2FEF}, {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};

// What may follow the first character besides those that may be it.
constexpr Range kNameRest[] = {{'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

template <std::size_t Count> bool Contains(const Range (&ranges)[Count], char32_t c) noexcept {
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [c](const Range& range) { return c >= range.first && c <= range.last; });
}

// What most names are made of.
constexpr bool IsAsciiLetter(wchar_t c) noexcept { return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z'); }

} // namespace

bool IsNCName(std::wstring_view name) noexcept {
    const wchar_t* p = name.data();
    const wchar_t* const end = p + name.size();
    if (p == end || !Contains(kNameStart, NextCodePoint(p, end)))
        return false;
    while ((p = std::find_if_not(p, end, [](wchar_t c) { return IsAsciiLetter(c); })) != end) {
        const char32_t c = NextCodePoint(p, end);
        if (!Contains(kNameStart, c) && !Contains(kNameRest, c))
            return false;
    }
    return true;
}

std::wstring CodePointName(char32_t codePoint) {
    std::wstring name = L"U+";
    int shift = 28;
    while (shift > 12 && (codePoint >> shift) == 0)
        shift -= 4;
    for (; shift >= 0; shift -= 4)
        name += L"0123456789ABCDEF"[(codePoint >> shift) & 0xF];
    return name;
}

} // namespace KAXML

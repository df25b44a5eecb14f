#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace KAXML {

/// A name of a document as written and as resolved. Names live until the end of the parse; equal names of one
/// parse are one object.
struct XmlName {
    std::wstring namespaceUri;
    std::wstring localName;
    std::wstring qualifiedName;
    std::uint32_t number = 0; // names of one parse are numbered from 0 on
};

/// Whether XML with namespaces allows this as a name without a prefix (XML 1.0, fifth edition).
bool IsNCName(std::wstring_view name) noexcept;

/// Whether XML 1.0 can hold this character at all, escaped or not.
constexpr bool IsXmlCharacter(char32_t c) noexcept {
    if (c < 0x20)
        return c == '\t' || c == '\n' || c == '\r';
    return c <= 0xD7FF || (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

/// A character as people write its number: U+ and at least four hexadecimal digits.
std::wstring CodePointName(char32_t codePoint);

} // namespace KAXML

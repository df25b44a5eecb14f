#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace KAXML {

/// How the bytes of a file are to be read, judged from its first bytes: byte order mark, the
/// pattern of the first characters, XML declaration.
struct XmlEncoding {
    /// Length of the byte order mark, which is no part of the document.
    std::size_t markLength = 0;
    /// The encoding's name for TextDecoder; empty for UTF-8, which needs none.
    std::string name;
    /// Why the file cannot be read; empty when it can.
    std::wstring refusal;
    /// With a refusal: the document up to the place to blame.
    std::string textBeforeRefusal;
};

/// As many of a file's first bytes as DetectEncoding wants to see. A longer XML declaration is
/// refused.
inline constexpr std::size_t kXmlDeclarationLimit = 4096;

XmlEncoding DetectEncoding(std::string_view head);

} // namespace KAXML

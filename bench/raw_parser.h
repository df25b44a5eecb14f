#pragma once

#include <filesystem>

namespace bench {

/// Parses the file with libxml2 and callbacks that do nothing: the least that any streaming client of this
/// parser has to pay. @throws std::runtime_error when the parser refuses the file.
void RawParse(const std::filesystem::path& file);

} // namespace bench

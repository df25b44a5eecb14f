#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

/// Writes an XML file element by element. Texts and attributes are written as they are given.
class ElementWriter {
  public:
    /// @param isIndented  one element on a line, indented; else no white space between elements.
    ElementWriter(const std::filesystem::path& file, bool isIndented);

    /// @param attributes  everything between the name and the end of the tag.
    void Open(std::string_view name, std::string_view attributes = {});
    void Close();
    void Leaf(std::string_view name, std::string_view text);

    /// The bytes written so far.
    std::size_t Size() const noexcept { return m_written + m_buffer.size(); }
    /// Writes what is still buffered. @throws std::runtime_error when the file could not be written.
    void Finish();

  private:
    void StartLine();
    void EndLine();
    void Tag(std::string_view name, std::string_view attributes);
    void Flush();

    std::filesystem::path m_path;
    std::ofstream m_file;
    bool m_isIndented;
    std::string m_buffer;
    std::size_t m_written = 0;
    std::vector<std::string> m_open;
};

} // namespace bench

#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace KAXML {

/// Collects the character data between two tags as wide text. Its storage is used again for the
/// next run, unless one was so large that keeping it would hold memory for nothing.
class CharacterRun {
  public:
    /// Appends UTF-8 text.
    void Append(std::string_view utf8);

    bool IsEmpty() const noexcept { return m_length == 0; }
    const wchar_t* Text() const noexcept { return m_text.get(); }
    std::size_t Length() const noexcept { return m_length; }

    /// Empties the run. Text() stays valid until the next Append unless the run was large.
    void Clear() noexcept;

  private:
    void Grow(std::size_t length);
    void AppendOther(std::string_view& utf8);

    std::unique_ptr<wchar_t[]> m_text;
    std::size_t m_length = 0;
    std::size_t m_capacity = 0;
    std::wstring m_decoded;
};

} // namespace KAXML

#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace KAXML {

/// Strings with room in them, handed from handlers that are finished to handlers that begin, so
/// that a document of many small instances does not allocate a string for each handler.
class SpareStrings {
  public:
    /// Gives an empty string the room of a spare one, if there is any.
    void Take(std::wstring& text) noexcept {
        if (m_count > 0)
            text.swap(m_strings[--m_count]);
        text.clear();
    }

    /// Keeps a string's room for later, unless a large value made it large.
    void GiveBack(std::wstring& text) noexcept {
        if (m_count < m_strings.size() && text.capacity() <= kLargestKept)
            text.swap(m_strings[m_count++]);
    }

  private:
    static constexpr std::size_t kLargestKept = 16384;

    std::array<std::wstring, 16> m_strings;
    std::size_t m_count = 0;
};

} // namespace KAXML

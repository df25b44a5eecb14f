#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace KAXML {

/// Finds the first number from 2 on that, appended to a name, makes one that a list does not hold.
/// Looks at every name of the list once, however many of them have numbers already.
class FreeName {
  public:
    /// @param name  must outlive this object.
    FreeName(std::wstring_view name, std::size_t listSize) : m_name(name), m_isTaken(listSize + 1) {}

    /// Takes note of a name of the list.
    void Exclude(std::wstring_view listed) noexcept;
    std::wstring Get() const;

  private:
    std::wstring_view m_name;
    std::vector<bool> m_isTaken; // 2 and the numbers behind it: more than the list can take
};

} // namespace KAXML

#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace plant {

/// Rows of text, printed in columns that are as wide as their widest cell.
class Table {
  public:
    explicit Table(std::vector<std::wstring> headings) : m_rows{std::move(headings)} {}

    void Add(std::vector<std::wstring> cells) { m_rows.push_back(std::move(cells)); }
    void Print(std::ostream& out) const;

  private:
    std::vector<std::vector<std::wstring>> m_rows;
};

} // namespace plant

#include "table.h"

#include "text.h"

#include <algorithm>

namespace plant {

void Table::Print(std::ostream& out) const {
    std::vector<std::size_t> widths(m_rows.front().size());
    for (const auto& row : m_rows)
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    for (const auto& row : m_rows) {
        std::wstring line;
        for (std::size_t i = 0; i < row.size(); ++i)
            line += L"  " + row[i] + std::wstring(widths[i] - row[i].size(), L' ');
        line.erase(line.find_last_not_of(L' ') + 1);
        out << Utf8(line) << '\n';
        if (&row == &m_rows.front())
            out << "  " << std::string(line.size() - 2, '-') << '\n';
    }
}

} // namespace plant

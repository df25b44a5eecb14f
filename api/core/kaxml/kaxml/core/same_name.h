#pragma once

#include <string_view>

namespace KAXML {

/// Whether two names are the same text. For searches through lists: names that are listed together
/// often have one length and begin alike, so the last character tells most of them apart.
inline bool IsSameName(std::wstring_view first, std::wstring_view second) noexcept {
    if (first.size() != second.size() || first.empty())
        return first.size() == second.size();
    return first.back() == second.back() && (first.data() == second.data() || first == second);
}

} // namespace KAXML

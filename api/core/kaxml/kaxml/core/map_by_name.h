#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace KAXML {

struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::wstring_view name) const noexcept { return std::hash<std::wstring_view>()(name); }
};

/// Things by their names. A name is looked for without a copy of its text.
template <typename Named> using MapByName = std::unordered_map<std::wstring, Named, NameHash, std::equal_to<>>;

} // namespace KAXML

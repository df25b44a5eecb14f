#pragma once

#include <algorithm>
#include <vector>

namespace KAXML {

/// Makes sure that the next item appended to a list needs no memory. The room grows by doubling, from
/// eight items on, however often it is asked for: reserve(size() + 1) would move a long list each time.
template <typename Item> void MakeRoomForOne(std::vector<Item>& list) {
    constexpr std::size_t kSmallest = 8;
    if (list.size() == list.capacity())
        list.reserve(std::max(kSmallest, 2 * list.size()));
}

} // namespace KAXML

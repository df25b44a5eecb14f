#pragma once

namespace KAXML::Test {

/// What the allocation functions of this program do and count. C libraries' count too, unless a
/// sanitizer needs malloc for itself.
struct AllocationState {
    long failure; ///< which of the allocations counted from 1 on fails; 0 for none
    bool goesOn;  ///< so do all behind it
    long count;
    long liveBlocks;
};

extern AllocationState g_allocations;

} // namespace KAXML::Test

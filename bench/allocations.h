#pragma once

#include <cstdint>

namespace bench {

/// The heap allocations of the calling thread since it began: those of C++ code and those of libxml2.
std::uint64_t Allocations() noexcept;

/// Has libxml2 count its allocations too; to be called before anything uses it.
void CountParserAllocations();

} // namespace bench

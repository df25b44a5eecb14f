#pragma once

#include <cstddef>

namespace bench {

/// What a client found in a document. Clients that build the same objects have equal tallies.
struct Tally {
    std::size_t instances = 0;  ///< with the relationships
    std::size_t values = 0;     ///< with members of arrays and values in structs
    std::size_t characters = 0; ///< of class names, ids and texts

    bool operator==(const Tally&) const = default;
};

} // namespace bench

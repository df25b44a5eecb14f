#pragma once

#include <optional>
#include <string>
#include <vector>

namespace bench {

/// One line of the table: a measurement, what it is compared with, and what must be reached.
struct Figure {
    std::string name;
    std::string ours;
    std::string baseline;         ///< empty when the measurement is compared with nothing
    std::optional<double> atMost; ///< of the ratio, or of the measurement without a baseline
};

std::vector<Figure> AllFigures();

} // namespace bench

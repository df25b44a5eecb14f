#pragma once

#include "collector.h"
#include "figures.h"

#include <ostream>

namespace bench {

/// Prints the figures that were measured. A table that is not worth quoting judges nothing.
void PrintTable(std::ostream& out, const std::vector<Figure>& figures, const std::vector<Measurement>& measurements,
                const Medians& medians, bool isQuotable);

} // namespace bench

#pragma once

#include "options.h"

#include <ostream>
#include <string>
#include <vector>

namespace bench {

/// Why figures of this build or this kind of run are not to be quoted; empty when they are.
std::vector<std::string> ReasonsNotToQuote(const Options& options);

/// Says what was measured where, and whether the figures may be quoted.
void PrintBanner(std::ostream& out, const Options& options, const std::vector<std::string>& reasonsNotToQuote);

} // namespace bench

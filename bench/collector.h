#pragma once

#include "measurements.h"

#include <map>
#include <string>
#include <vector>

namespace bench {

/// The medians of measurements, by name.
using Medians = std::map<std::string, double>;

struct Procedure {
    int repetitions;
    bool isSmall;     ///< one iteration of everything
    bool usesCpuTime; ///< not for figures of several threads
};

/// Runs measurements with Google Benchmark: those of one group by turns in random order, one group after
/// the other, each in a process of its own, because the memory that one leaves behind changes the times
/// of the next. @throws std::runtime_error when one fails.
Medians Measure(const std::vector<Measurement>& measurements, const Procedure& procedure);

} // namespace bench

#pragma once

#include "inputs.h"

#include <benchmark/benchmark.h>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

enum class Unit { seconds, count, bytes };

/// Something that is measured. Those with the same text before the "/" of their names are measured by turns.
struct Measurement {
    std::string name;
    Unit unit;
    std::function<void(benchmark::State&)> run;
};

/// The counter through which a measurement that is no time gives its result.
inline constexpr const char* kValue = "value";

/// Everything that can be measured. The inputs must outlive the list.
std::vector<Measurement> AllMeasurements(Inputs& inputs);

/// What the names of a schema's measurements begin with. Each size is a group, but for two that are compared.
std::string LargeSchemaName(std::size_t classCount);
inline constexpr std::size_t kSchemaSizes[] = {500, 1000, 2000, 4000};
inline constexpr const char* kReferencesName = "referencing schema/";

void AddSchemaMeasurements(std::vector<Measurement>& list, Inputs& inputs);
void AddWriterMeasurements(std::vector<Measurement>& list, Inputs& inputs);
void AddResourceMeasurements(std::vector<Measurement>& list, Inputs& inputs);

} // namespace bench

#include "allocations.h"
#include "client.h"
#include "measurements.h"
#include "memory_probe.h"

#include <algorithm>
#include <cmath>

namespace bench {
namespace {

constexpr std::size_t kMegabyte = 1'000'000;

// Allocations for each instance once the first thousand (of short documents: the first half) are read.
double AllocationsPerInstance(const InstanceInput& input) {
    Client client(input.schema);
    const std::size_t total = client.ParseFile(input.document);
    const std::size_t warmUp = std::min<std::size_t>(1000, total / 2);
    std::size_t seen = 0;
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    client.ParseFile(input.document, [&](const KAXML::CKaInstance&) {
        last = Allocations();
        if (++seen == warmUp)
            first = last;
    });
    return static_cast<double>(last - first) / static_cast<double>(total - warmUp);
}

void Report(benchmark::State& state, double value) {
    for (auto _ : state)
        state.counters[kValue] = value;
}

// The list of an instance's values needs the same room for both numbers of values, so the difference is what
// the values themselves cost.
double AllocationsPerValue(Inputs& inputs) {
    constexpr std::size_t kFew = 70;
    constexpr std::size_t kMany = 120;
    const std::size_t bytes = inputs.Scaled(20 * kMegabyte);
    const double few = AllocationsPerInstance(inputs.Special("few", Kind::wide, {bytes, 0, kFew}));
    const double many = AllocationsPerInstance(inputs.Special("more", Kind::wide, {bytes, 0, kMany}));
    // To three places: now and then a text outgrows, for the first time, all that were in its place before.
    return std::round((many - few) / (kMany - kFew) * 1000) / 1000 + 0.0; // no minus in front of a nought
}

void AddAllocations(std::vector<Measurement>& list, Inputs& inputs, const std::string& name, Kind kind) {
    list.push_back({"allocations/" + name, Unit::count, [&inputs, kind](benchmark::State& state) {
                        Report(state, AllocationsPerInstance(inputs.Document(kind)));
                    }});
}

void AddPeak(std::vector<Measurement>& list, Inputs& inputs, const std::string& name, Kind kind) {
    for (const std::string client : {"ours", "pugixml"})
        list.push_back({"memory/" + name + " " + client, Unit::bytes, [&inputs, kind, client](benchmark::State& state) {
                            const InstanceInput& input = inputs.Document(kind);
                            Report(state, MeasurePeakMemory({client, input.schema, input.document}));
                        }});
}

void AddPeakAt(std::vector<Measurement>& list, Inputs& inputs, std::size_t megabytes) {
    list.push_back(
        {"memory/" + std::to_string(megabytes) + " MB", Unit::bytes, [&inputs, megabytes](benchmark::State& state) {
             const Amount amount{inputs.Scaled(megabytes * kMegabyte)};
             const InstanceInput input = inputs.Special("memory", Kind::plant, amount);
             Report(state, MeasurePeakMemory({"ours", input.schema, input.document}));
             std::filesystem::remove(input.document);
         }});
}

} // namespace

void AddResourceMeasurements(std::vector<Measurement>& list, Inputs& inputs) {
    list.push_back({"allocations/value", Unit::count,
                    [&inputs](benchmark::State& state) { Report(state, AllocationsPerValue(inputs)); }});
    const std::pair<const char*, Kind> kinds[] = {{"plant", Kind::plant},     {"compact", Kind::plantCompact},
                                                  {"wide", Kind::wide},       {"arrays", Kind::arrays},
                                                  {"long", Kind::longValues}, {"many", Kind::many}};
    for (const auto& [name, kind] : kinds)
        AddAllocations(list, inputs, name, kind);
    for (const auto& [name, kind] : kinds)
        AddPeak(list, inputs, name, kind);
    AddPeakAt(list, inputs, 10);
    AddPeakAt(list, inputs, 500);
}

} // namespace bench

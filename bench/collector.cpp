#include "collector.h"

#include <algorithm>
#include <iostream>
#include <set>
#include <stdexcept>

namespace bench {
namespace {

double MedianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

// Takes the result of every single run.
class Collector final : public benchmark::BenchmarkReporter {
  public:
    explicit Collector(bool usesCpuTime) : m_usesCpuTime(usesCpuTime) {}

    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration)
                Take(run);
    }

    Medians Result() const {
        Medians medians;
        for (const auto& [name, values] : m_values)
            medians[name] = MedianOf(values);
        return medians;
    }

  private:
    void Take(const Run& run) {
        const auto counter = run.counters.find(kValue);
        const double time = m_usesCpuTime ? run.cpu_accumulated_time : run.real_accumulated_time;
        m_values[run.run_name.function_name].push_back(
            counter != run.counters.end() ? counter->second.value : time / static_cast<double>(run.iterations));
    }

    bool m_usesCpuTime;
    std::map<std::string, std::vector<double>> m_values;
};

void Register(const Measurement& measurement, const Procedure& procedure) {
    benchmark::internal::Benchmark* const registered =
        benchmark::RegisterBenchmark(measurement.name.c_str(), measurement.run);
    const bool isTime = measurement.unit == Unit::seconds;
    registered->Repetitions(isTime ? procedure.repetitions : 1);
    if (procedure.isSmall || !isTime)
        registered->Iterations(1);
    else
        registered->UseRealTime()->MinTime(0.2);
}

void RunRegistered(Collector& collector, const std::string& group) {
    std::cerr << "measuring " << group << " ...\n";
    benchmark::RunSpecifiedBenchmarks(&collector);
    benchmark::ClearRegisteredBenchmarks();
}

std::string GroupOf(const Measurement& measurement) { return measurement.name.substr(0, measurement.name.find('/')); }

} // namespace

Medians Measure(const std::vector<Measurement>& measurements, const Procedure& procedure) {
    std::string program = "kaxml_bench";
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    char* arguments[] = {program.data(), interleaving.data(), nullptr};
    int argumentCount = 2;
    benchmark::Initialize(&argumentCount, arguments);

    Collector collector(procedure.usesCpuTime);
    for (auto first = measurements.begin(); first != measurements.end();) {
        const std::string group = GroupOf(*first);
        for (; first != measurements.end() && GroupOf(*first) == group; ++first)
            Register(*first, procedure);
        RunRegistered(collector, group);
    }
    return collector.Result();
}

} // namespace bench

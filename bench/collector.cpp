#include "collector.h"

#include "child_process.h"

#include <algorithm>
#include <iostream>
#include <limits>
#include <sstream>
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

std::string GroupOf(const Measurement& measurement) { return measurement.name.substr(0, measurement.name.find('/')); }

using Group = std::vector<Measurement>;

Medians MeasureGroup(const Group& group, const Procedure& procedure) {
    for (const Measurement& measurement : group)
        Register(measurement, procedure);
    Collector collector(procedure.usesCpuTime);
    benchmark::RunSpecifiedBenchmarks(&collector);
    return collector.Result();
}

std::string Write(const Medians& medians) {
    std::ostringstream text;
    text.precision(std::numeric_limits<double>::max_digits10);
    for (const auto& [name, value] : medians)
        text << name << '\n' << value << '\n';
    return text.str();
}

Medians Read(const std::string& text) {
    Medians medians;
    std::istringstream lines(text);
    for (std::string name, value; std::getline(lines, name) && std::getline(lines, value);)
        medians[name] = std::stod(value);
    return medians;
}

std::vector<Group> GroupsOf(const std::vector<Measurement>& measurements) {
    std::vector<Group> groups;
    for (const Measurement& measurement : measurements) {
        if (groups.empty() || GroupOf(groups.back().front()) != GroupOf(measurement))
            groups.emplace_back();
        groups.back().push_back(measurement);
    }
    return groups;
}

} // namespace

Medians Measure(const std::vector<Measurement>& measurements, const Procedure& procedure) {
    std::string program = "kaxml_bench";
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    char* arguments[] = {program.data(), interleaving.data(), nullptr};
    int argumentCount = 2;
    benchmark::Initialize(&argumentCount, arguments);

    Medians medians;
    for (const Group& group : GroupsOf(measurements)) {
        std::cerr << "measuring " << GroupOf(group.front()) << " ...\n";
        medians.merge(Read(RunInCopy([&] { return Write(MeasureGroup(group, procedure)); })));
    }
    return medians;
}

} // namespace bench

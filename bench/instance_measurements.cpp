#include "client.h"
#include "measurements.h"
#include "pugixml_client.h"
#include "raw_parser.h"

#include <chrono>
#include <deque>
#include <thread>

namespace bench {
namespace {

using Find = std::function<InstanceInput()>;
using Parse = std::function<void(Client&, const InstanceInput&)>;

void AddParse(std::vector<Measurement>& list, const std::string& name, const Find& find, const Parse& parse) {
    list.push_back({name, Unit::seconds, [find, parse](benchmark::State& state) {
                        const InstanceInput input = find();
                        Client client(input.schema);
                        for (auto _ : state)
                            parse(client, input);
                    }});
}

void ParseDocument(Client& client, const InstanceInput& input) { client.ParseFile(input.document); }

void AddParses(std::vector<Measurement>& list, const std::string& name, const Find& find) {
    AddParse(list, name + "/ours", find, ParseDocument);
    AddParse(list, name + "/raw", find, [](Client&, const InstanceInput& input) { RawParse(input.document); });
    AddParse(list, name + "/pugixml", find, [](Client&, const InstanceInput& input) { PugixmlParse(input.document); });
}

void AddParses(std::vector<Measurement>& list, Inputs& inputs, const std::string& name, Kind kind) {
    AddParses(list, name, [&inputs, kind] { return inputs.Document(kind); });
}

void AddWideText(std::vector<Measurement>& list, Inputs& inputs) {
    list.push_back({"plant/text", Unit::seconds, [&inputs](benchmark::State& state) {
                        const std::wstring& text = inputs.PlantText();
                        Client client(inputs.Document(Kind::plant).schema);
                        for (auto _ : state)
                            client.ParseText(text);
                    }});
}

// How long the jobs take that run at once, one in this thread. The time of several threads is always
// that of a clock on the wall.
double MeasureAtOnce(const std::vector<std::function<void()>>& jobs) {
    const auto start = std::chrono::steady_clock::now();
    std::vector<std::thread> others;
    for (std::size_t i = 1; i < jobs.size(); ++i)
        others.emplace_back(jobs[i]);
    jobs.front()();
    for (std::thread& other : others)
        other.join();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double ParseAtOnce(const InstanceInput& input, std::size_t count) {
    std::deque<Client> clients;
    std::vector<std::function<void()>> jobs;
    for (std::size_t i = 0; i < count; ++i)
        jobs.push_back([&input, &client = clients.emplace_back(input.schema)] { client.ParseFile(input.document); });
    return MeasureAtOnce(jobs);
}

double RawParseAtOnce(const InstanceInput& input, std::size_t count) {
    return MeasureAtOnce({count, [&input] { RawParse(input.document); }});
}

void AddThreads(std::vector<Measurement>& list, Inputs& inputs, const std::string& name,
                double (*parse)(const InstanceInput&, std::size_t), std::size_t count) {
    list.push_back({"threads/" + name, Unit::seconds, [&inputs, parse, count](benchmark::State& state) {
                        for (auto _ : state)
                            state.counters[kValue] = parse(inputs.Document(Kind::plant), count);
                    }});
}

} // namespace

std::vector<Measurement> AllMeasurements(Inputs& inputs) {
    std::vector<Measurement> list;
    AddParses(list, inputs, "plant", Kind::plant);
    AddParse(
        list, "plant/crowded", [&inputs] { return inputs.CrowdedPlant(2000); }, ParseDocument);
    AddWideText(list, inputs);
    AddParses(list, inputs, "compact", Kind::plantCompact);
    AddParses(list, inputs, "wide", Kind::wide);
    AddParses(list, inputs, "arrays", Kind::arrays);
    AddParses(list, inputs, "long", Kind::longValues);
    AddParses(list, inputs, "many", Kind::many);
    AddParses(list, "small", [&inputs] { return inputs.Special("small", Kind::plant, Amount{1000}); });
    AddThreads(list, inputs, "one", ParseAtOnce, 1);
    AddThreads(list, inputs, "two", ParseAtOnce, 2);
    AddThreads(list, inputs, "raw one", RawParseAtOnce, 1);
    AddThreads(list, inputs, "raw two", RawParseAtOnce, 2);
    AddSchemaMeasurements(list, inputs);
    AddWriterMeasurements(list, inputs);
    AddResourceMeasurements(list, inputs);
    return list;
}

} // namespace bench

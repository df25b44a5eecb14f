#include "client.h"
#include "measurements.h"
#include "pugixml_client.h"
#include "raw_parser.h"

#include <memory>

namespace bench {
namespace {

using Files = std::vector<std::filesystem::path>; // the schema's, in front, and those it refers to
using Find = std::function<Files()>;
using Read = void (*)(const std::filesystem::path&);

// Times reading alone: the schema is made before and destroyed afterwards.
void TimeReading(benchmark::State& state, const std::filesystem::path& file) {
    for (auto _ : state) {
        state.PauseTiming();
        auto schema = std::make_unique<KAXML::CKaSchema>(L"Empty", L"Empty", nullptr);
        state.ResumeTiming();
        ReadSchema(*schema, file);
        state.PauseTiming();
        schema.reset();
        state.ResumeTiming();
    }
}

void TimeWriting(benchmark::State& state, const std::filesystem::path& file, const std::filesystem::path& copy) {
    KAXML::CKaSchema schema(L"Empty", L"Empty", nullptr);
    ReadSchema(schema, file);
    for (auto _ : state)
        schema.WriteXML(copy.wstring().c_str());
}

void AddBaseline(std::vector<Measurement>& list, const std::string& name, const Find& find, Read read) {
    list.push_back({name, Unit::seconds, [find, read](benchmark::State& state) {
                        const Files files = find();
                        for (auto _ : state)
                            for (const std::filesystem::path& file : files)
                                read(file);
                    }});
}

void AddSchema(std::vector<Measurement>& list, const std::string& name, const Find& find,
               const std::filesystem::path& folder) {
    list.push_back(
        {name + "read", Unit::seconds, [find](benchmark::State& state) { TimeReading(state, find().front()); }});
    list.push_back({name + "write", Unit::seconds, [find, folder](benchmark::State& state) {
                        TimeWriting(state, find().front(), folder / "written.kaschema.xml");
                    }});
    AddBaseline(list, name + "raw", find, RawParse);
    AddBaseline(list, name + "pugixml", find, [](const std::filesystem::path& file) { PugixmlReadSchema(file); });
}

} // namespace

std::string LargeSchemaName(std::size_t classCount) {
    const std::string count = std::to_string(classCount);
    return classCount < 2000 ? "schema " + count + "/" : "large schemas/" + count + " ";
}

void AddSchemaMeasurements(std::vector<Measurement>& list, Inputs& inputs) {
    for (const std::size_t count : kSchemaSizes)
        AddSchema(
            list, LargeSchemaName(count), [&inputs, count] { return Files{inputs.LargeSchema(count)}; },
            inputs.Folder());
    AddSchema(
        list, kReferencesName, [&inputs] { return inputs.ReferencingSchema(); }, inputs.Folder());
}

} // namespace bench

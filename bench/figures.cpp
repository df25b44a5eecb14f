#include "figures.h"

#include "measurements.h"

namespace bench {
namespace {

void AddParses(std::vector<Figure>& list, const std::string& title, const std::string& name,
               std::optional<double> atMostRaw, std::optional<double> atMostPugixml) {
    list.push_back({"parse " + title + " / raw parser", name + "/ours", name + "/raw", atMostRaw});
    list.push_back({"parse " + title + " / pugixml", name + "/ours", name + "/pugixml", atMostPugixml});
}

void AddSchema(std::vector<Figure>& list, const std::string& title, const std::string& name) {
    list.push_back({"read schema, " + title + " / raw parser", name + "read", name + "raw", 6.0});
    list.push_back({"read schema, " + title + " / pugixml", name + "read", name + "pugixml", {}});
}

void AddSchemas(std::vector<Figure>& list) {
    for (const std::size_t count : kSchemaSizes) {
        const std::string title = std::to_string(count) + " classes";
        AddSchema(list, title, LargeSchemaName(count));
        list.push_back(
            {"write / read schema, " + title, LargeSchemaName(count) + "write", LargeSchemaName(count) + "read", 1.0});
    }
    list.push_back(
        {"read schema, 4000 / 2000 classes", LargeSchemaName(4000) + "read", LargeSchemaName(2000) + "read", 2.3});
    AddSchema(list, "30 references", kReferencesName);
}

void AddResources(std::vector<Figure>& list) {
    list.push_back({"allocations per primitive value", "allocations/value", "", 0.0});
    for (const char* const name : {"plant", "compact", "wide", "arrays", "long", "many"})
        list.push_back({std::string("allocations per instance, ") + name, std::string("allocations/") + name, "", {}});
    for (const char* const name : {"plant", "compact", "wide", "arrays", "long", "many"})
        list.push_back({std::string("peak memory, ") + name + " / pugixml",
                        std::string("memory/") + name + " ours",
                        std::string("memory/") + name + " pugixml",
                        {}});
    list.push_back({"peak memory, 500 MB / 10 MB", "memory/500 MB", "memory/10 MB", 1.05});
}

} // namespace

std::vector<Figure> AllFigures() {
    std::vector<Figure> list;
    AddParses(list, "plant", "plant", 1.5, 1.0);
    list.push_back({"parse plant with 2000 classes more / plant", "plant/crowded", "plant/ours", {}});
    list.push_back({"parse plant from wide text / raw parser", "plant/text", "plant/raw", 1.8});
    AddParses(list, "compact", "compact", 1.5, 1.0);
    for (const char* const name : {"wide", "arrays", "long", "many"})
        AddParses(list, name, name, 1.8, {});
    AddParses(list, "a small document", "small", {}, {});
    list.push_back({"two threads, two documents / one, one", "threads/two", "threads/one", 1.4});
    list.push_back({"the same of the raw parser: the machine's share", "threads/raw two", "threads/raw one", {}});
    AddSchemas(list);
    list.push_back({"AppendAsXml, a document / copy its text", "append/ours", "append/copy", 4.0});
    list.push_back({"AppendAsXml, one instance / copy its text", "append one/ours", "append one/copy", 4.0});
    AddResources(list);
    return list;
}

} // namespace bench

// Reads schemas and an instance document with the KAXML library, shows what is in them, writes both
// and checks that nothing got lost. `plant --help` tells how to use it.

#include "build_schema.h"
#include "factory.h"
#include "instance_report.h"
#include "options.h"
#include "report.h"
#include "round_trip.h"
#include "text.h"

#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>

namespace plant {
namespace {

constexpr int kUsageExitCode = 2;

std::vector<LoadedSchema> LoadSchemas(const Options& options) {
    std::vector<LoadedSchema> schemas;
    for (const std::filesystem::path& file : options.schemaFiles)
        schemas.push_back(LoadSchema(file, options.searchPath));
    return schemas;
}

unsigned int ParseFlagsOf(const Options& options) {
    return options.strict ? 0u : KAXML::SKIP_UNRECOGNIZED_CLASSES | KAXML::IGNORE_UNRECOGNIZED_PROPERTIES;
}

void ShowDocument(const std::vector<LoadedSchema>& schemas, const Document& document) {
    PrintSchemas(std::cout, schemas);
    PrintClasses(std::cout, schemas, document);
    PrintProjects(std::cout, document);
    PrintInstances(std::cout, document, 4);
    PrintRelationships(std::cout, document, 3);
}

bool ShowBuiltSchema(const std::filesystem::path& folder) {
    PrintHeading(std::cout, "A schema built by calls");
    const auto water = BuildWaterSchema();
    const bool isUnchanged = RoundTripSchemas(std::cout, {water.get()}, folder);
    std::cout << '\n' << std::ifstream(folder / water->OfficialFilename(), std::ios::binary).rdbuf();
    return isUnchanged;
}

bool ShowRoundTrips(const Options& options, const std::vector<LoadedSchema>& schemas, const Document& document,
                    const ParseSettings& settings) {
    const TemporaryFolder folder;
    PrintHeading(std::cout, "Schemas saved and read back");
    bool isUnchanged = RoundTripSchemas(std::cout, PointersTo(schemas), folder.Path());
    PrintHeading(std::cout, "Instances written and parsed again");
    isUnchanged &= RoundTripInstances(std::cout, document, settings);
    if (options.sample)
        isUnchanged &= ShowBuiltSchema(folder.Path());
    return isUnchanged;
}

bool Run(const Options& options, LogBook& log) {
    const std::vector<LoadedSchema> schemas = LoadSchemas(options);
    Factory factory(PointersTo(schemas));
    const ParseSettings settings{schemas.front().schema.get(), &factory, ParseFlagsOf(options)};
    const Document document = ReadDocumentFile(options.instanceFile, settings);
    ShowDocument(schemas, document);
    PrintHeading(std::cout, "Logged while reading");
    PrintLog(std::cout, log.Take());
    PrintRate(std::cout, MeasureParseRate(options.instanceFile, settings));
    log.Take();
    const bool isUnchanged = ShowRoundTrips(options, schemas, document, settings);
    PrintHeading(std::cout, "Logged while writing and reading back");
    PrintLog(std::cout, log.Take());
    return isUnchanged;
}

// An exception says what failed; why a file could not be read stands in the log.
void PrintLoggedErrors(LogBook& log) {
    for (const LogEntry& entry : log.Take())
        if (entry.severity == KAXML::LOG_ERROR && entry.category != L"Exception")
            std::cerr << "plant: " << Utf8(entry.message) << '\n';
}

int RunReportingFailures(const Options& options) {
    LogBook log;
    const auto fail = [&log](const std::string& message) {
        std::cout.flush();
        PrintLoggedErrors(log);
        std::cerr << "plant: " << message << '\n';
        return EXIT_FAILURE;
    };
    try {
        const bool isUnchanged = Run(options, log);
        if (!std::cout.flush())
            return fail("cannot write to standard output");
        return isUnchanged ? EXIT_SUCCESS : fail("what was written is not what was read");
    } catch (const KAXML::KAXMLException& error) {
        return fail(Utf8(error.Message()));
    } catch (const KAXML::_com_error& error) {
        return fail(Utf8(error.Description()) + " (" + Utf8(error.ErrorMessage()) + ")");
    } catch (const std::exception& error) {
        return fail(error.what());
    }
}

} // namespace
} // namespace plant

int main(int argc, char** argv) {
    try {
        const plant::Options options = plant::ParseArguments({argv + 1, argv + argc});
        if (!options.help)
            return plant::RunReportingFailures(options);
        std::cout << plant::HelpText();
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << "plant: " << error.what() << "; plant --help tells how to use it\n";
        return plant::kUsageExitCode;
    }
}

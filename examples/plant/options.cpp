#include "options.h"

namespace plant {
namespace {

using Arguments = std::vector<std::string>;

std::string ValueOf(Arguments::const_iterator& argument, Arguments::const_iterator end) {
    const std::string& name = *argument;
    if (++argument == end)
        throw UsageError(name + " needs a value");
    return *argument;
}

void UseSample(Options& options, const std::filesystem::path& directory) {
    if (!std::filesystem::is_directory(directory))
        throw UsageError("there is no directory '" + directory.string() + "' with the sample data");
    options.sample = true;
    options.schemaFiles = {directory / "Plant.02.01.kaschema.xml", directory / "SiteUtilities.01.03.kaschema.xml"};
    options.searchPath = (directory / "schemas").wstring();
    options.instanceFile = directory / "plant.kainstance.xml";
}

void UseFiles(Options& options, const Arguments& files) {
    if (files.empty())
        throw UsageError("--schema needs an instance document to read");
    options.instanceFile = files.front();
    // Next to the schema is where people put the schemas it references.
    for (const std::filesystem::path& schemaFile : options.schemaFiles) {
        options.searchPath += options.searchPath.empty() ? L"" : L";";
        options.searchPath += (schemaFile.has_parent_path() ? schemaFile.parent_path() : ".").wstring();
    }
}

} // namespace

Options ParseArguments(const std::vector<std::string>& arguments) {
    Options options;
    Arguments others;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        if (*argument == "--help" || *argument == "-h")
            options.help = true;
        else if (*argument == "--strict")
            options.strict = true;
        else if (*argument == "--schema")
            options.schemaFiles.emplace_back(ValueOf(argument, arguments.end()));
        else if (*argument == "--search-path")
            options.searchPath = std::filesystem::path(ValueOf(argument, arguments.end())).wstring();
        else if (argument->rfind("--", 0) == 0)
            throw UsageError("unknown option " + *argument);
        else
            others.push_back(*argument);
    }
    if (others.size() > 1)
        throw UsageError("'" + others[1] + "' is one argument too many");
    if (options.help)
        return options;
    if (!options.schemaFiles.empty())
        UseFiles(options, others);
    else if (!options.searchPath.empty())
        throw UsageError("--search-path goes with --schema");
    else
        UseSample(options, others.empty() ? "examples/plant/data" : others.front());
    return options;
}

const char* HelpText() {
    return "Reads schemas and an instance document, shows what is in them, writes both and compares what\n"
           "was written with what was read.\n"
           "\n"
           "  plant [DATA_DIR]                          the sample data (default: examples/plant/data)\n"
           "  plant --schema FILE [...] INSTANCE_FILE   files of your own\n"
           "\n"
           "  --schema FILE       a schema file; may be repeated, the first one is searched first\n"
           "  --search-path DIRS  directories of referenced schemas, separated by ';'; searched after the\n"
           "                      current one and those in KASCHEMA_PATH, before those of the schema files\n"
           "  --strict            unknown classes and properties are errors; otherwise they are skipped\n"
           "  --help              this text\n"
           "\n"
           "Exit status: 0 when all went well and every comparison found no difference, 1 when something\n"
           "failed, 2 for a wrong command line.\n";
}

} // namespace plant

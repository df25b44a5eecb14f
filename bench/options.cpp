#include "options.h"

#include <charconv>
#include <functional>
#include <map>
#include <stdexcept>
#include <string_view>

namespace bench {
namespace {

int ParseCount(const std::string& text) {
    int count = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
    if (error != std::errc() || end != text.data() + text.size() || count < 1)
        throw std::invalid_argument("not a number of repetitions: " + text);
    return count;
}

Probe& ProbeOf(Options& options) { return options.probe ? *options.probe : options.probe.emplace(); }

using Setter = std::function<void(Options&, const std::string&)>;

const std::map<std::string, Setter>& Setters() {
    static const std::map<std::string, Setter> setters = {
        {"--help", [](Options& o, const std::string&) { o.isHelp = true; }},
        {"--small", [](Options& o, const std::string&) { o.isSmall = true; }},
        {"--keep", [](Options& o, const std::string&) { o.isKept = true; }},
        {"--cpu", [](Options& o, const std::string&) { o.usesCpuTime = true; }},
        {"--repetitions", [](Options& o, const std::string& value) { o.repetitions = ParseCount(value); }},
        {"--filter", [](Options& o, const std::string& value) { o.filter = value; }},
        {"--folder", [](Options& o, const std::string& value) { o.folder = value; }},
        {"--probe", [](Options& o, const std::string& value) { ProbeOf(o).client = value; }},
        {"--schema", [](Options& o, const std::string& value) { ProbeOf(o).schema = value; }},
        {"--document", [](Options& o, const std::string& value) { ProbeOf(o).document = value; }}};
    return setters;
}

} // namespace

Options ParseOptions(int argc, const char* const* argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        const std::size_t equals = argument.find('=');
        const auto setter = Setters().find(argument.substr(0, equals));
        if (setter == Setters().end())
            throw std::invalid_argument("unknown argument: " + argument);
        setter->second(options, equals == std::string::npos ? std::string() : argument.substr(equals + 1));
    }
    return options;
}

const char* Usage() noexcept {
    return "kaxml_bench [options]\n"
           "  --help             print this\n"
           "  --filter=REGEX     only the figures whose name it matches\n"
           "  --repetitions=N    runs of each measurement, of which the median counts (7)\n"
           "  --small            tiny inputs: shows that all of it works, measures nothing\n"
           "  --cpu              processor time instead of time, for a machine that does other things too\n"
           "  --folder=PATH      where the inputs are put (the system's folder for temporary files)\n"
           "  --keep             do not remove them\n"
           "  --probe=ours|raw|pugixml --schema=FILE --document=FILE\n"
           "                     parse once, print the peak of memory; also good for a profiler\n";
}

} // namespace bench

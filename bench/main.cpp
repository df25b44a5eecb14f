#include "allocations.h"
#include "banner.h"
#include "options.h"
#include "table.h"

#include <chrono>
#include <cmath>
#include <exception>
#include <iostream>
#include <regex>

namespace bench {
namespace {

std::vector<Figure> SelectFigures(const std::string& filter) {
    std::vector<Figure> figures = AllFigures();
    const std::regex pattern(filter);
    std::erase_if(figures, [&](const Figure& figure) { return !std::regex_search(figure.name, pattern); });
    return figures;
}

bool IsNeeded(const Measurement& measurement, const std::vector<Figure>& figures) {
    for (const Figure& figure : figures)
        if (measurement.name == figure.ours || measurement.name == figure.baseline)
            return true;
    return false;
}

int Run(const Options& options) {
    const auto start = std::chrono::steady_clock::now();
    const std::vector<std::string> reasons = ReasonsNotToQuote(options);
    const std::vector<Figure> figures = SelectFigures(options.filter);
    if (figures.empty())
        throw std::invalid_argument("no figure's name matches " + options.filter);
    Inputs inputs(options.folder, options.isSmall, options.isKept);
    std::vector<Measurement> measurements = AllMeasurements(inputs);
    std::erase_if(measurements, [&](const Measurement& measurement) { return !IsNeeded(measurement, figures); });

    PrintBanner(std::cout, options, reasons);
    const Medians medians = Measure(measurements, {options.repetitions, options.isSmall, options.usesCpuTime});
    PrintTable(std::cout, figures, measurements, medians, reasons.empty());
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    std::cout << "\ntook " << std::lround(elapsed.count()) << " s\n";
    return 0;
}

} // namespace
} // namespace bench

int main(int argc, char** argv) {
    try {
        bench::CountParserAllocations();
        const bench::Options options = bench::ParseOptions(argc, argv);
        if (options.isHelp) {
            std::cout << bench::Usage();
            return 0;
        }
        return options.probe ? bench::RunProbe(*options.probe) : bench::Run(options);
    } catch (const std::invalid_argument& error) {
        std::cerr << error.what() << '\n' << bench::Usage();
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "kaxml_bench: " << error.what() << '\n';
        return 1;
    }
}

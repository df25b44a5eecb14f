#include "table.h"

#include <algorithm>
#include <cstdio>

namespace bench {
namespace {

constexpr double kMega = 1e6;

std::string Format(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string FormatTime(double seconds) {
    if (seconds < 1e-3)
        return Format("%.2f us", seconds * kMega);
    return seconds < 1 ? Format("%.2f ms", seconds * 1e3) : Format("%.3f s", seconds);
}

std::string FormatValue(double value, Unit unit) {
    switch (unit) {
    case Unit::seconds:
        return FormatTime(value);
    case Unit::count:
        return Format("%.7g", value);
    case Unit::bytes:
        return Format("%.1f MB", value / kMega);
    }
    return {};
}

Unit UnitOf(const std::string& name, const std::vector<Measurement>& measurements) {
    return std::find_if(measurements.begin(), measurements.end(), [&](const auto& m) { return m.name == name; })->unit;
}

void PrintRow(std::ostream& out, const std::string (&cells)[6]) {
    static constexpr std::size_t kWidths[] = {46, 10, 10, 7, 7, 7};
    for (std::size_t i = 0; i < std::size(cells); ++i) {
        const std::string padding(kWidths[i] > cells[i].size() ? kWidths[i] - cells[i].size() : 0, ' ');
        out << "| " << (i == 0 ? cells[i] + padding : padding + cells[i]) << ' ';
    }
    out << "|\n";
}

void PrintFigure(std::ostream& out, const Figure& figure, Unit unit, const Medians& medians, bool isQuotable) {
    const double ours = medians.at(figure.ours);
    std::string cells[] = {figure.name, FormatValue(ours, unit), "", "", "", ""};
    double judged = ours;
    if (!figure.baseline.empty()) {
        const double baseline = medians.at(figure.baseline);
        judged = ours / baseline;
        cells[2] = FormatValue(baseline, unit);
        cells[3] = Format("%.2f", judged);
    }
    if (figure.atMost) {
        cells[4] = Format("%.2f", *figure.atMost);
        cells[5] = !isQuotable ? "" : judged <= *figure.atMost ? "yes" : "NO";
    }
    PrintRow(out, cells);
}

} // namespace

void PrintTable(std::ostream& out, const std::vector<Figure>& figures, const std::vector<Measurement>& measurements,
                const Medians& medians, bool isQuotable) {
    PrintRow(out, {"figure", "ours", "baseline", "ratio", "at most", "met"});
    PrintRow(out, {"---", "--:", "--:", "--:", "--:", "--:"});
    for (const Figure& figure : figures)
        PrintFigure(out, figure, UnitOf(figure.ours, measurements), medians, isQuotable);
}

} // namespace bench

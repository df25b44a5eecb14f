#include "banner.h"

#include <cstdlib>
#include <fstream>
#include <kaxml/kaxml.h>
#include <libxml/parser.h>
#include <pugixml.hpp>
#include <sys/utsname.h>
#include <thread>

namespace bench {
namespace {

#ifdef __clang__
constexpr char kCompiler[] = __VERSION__;
#else
constexpr char kCompiler[] = "GCC " __VERSION__;
#endif

constexpr int kEnoughRepetitions = 7;

std::string Processor() {
    std::ifstream info("/proc/cpuinfo");
    for (std::string line; std::getline(info, line);)
        if (line.rfind("model name", 0) == 0)
            return line.substr(line.find(':') + 2);
    return "unknown processor";
}

std::string Kernel() {
    utsname name{};
    return uname(&name) == 0 ? std::string(name.sysname) + ' ' + name.release + ' ' + name.machine : "unknown system";
}

std::string LibraryVersion() {
    const std::wstring version = KAXML::GetLibraryVersion();
    return std::string(version.begin(), version.end());
}

double Load() {
    double load = 0;
    return getloadavg(&load, 1) == 1 ? load : 0;
}

} // namespace

std::vector<std::string> ReasonsNotToQuote(const Options& options) {
    std::vector<std::string> reasons;
#ifndef NDEBUG
    reasons.emplace_back("assertions are on");
#endif
#ifdef _GLIBCXX_ASSERTIONS
    reasons.emplace_back("the standard library's assertions are on");
#endif
#ifndef __OPTIMIZE__
    reasons.emplace_back("the compiler does not optimise");
#endif
    if (const std::string sanitizers = KAXML_BENCH_SANITIZERS; !sanitizers.empty())
        reasons.emplace_back("sanitizers are on: " + sanitizers);
    if (options.isSmall)
        reasons.emplace_back("the inputs are tiny");
    if (options.repetitions < kEnoughRepetitions)
        reasons.emplace_back("too few repetitions for a median");
    return reasons;
}

void PrintBanner(std::ostream& out, const Options& options, const std::vector<std::string>& reasonsNotToQuote) {
    out << "KAXML " << LibraryVersion() << ", " << KAXML_BENCH_BUILD_TYPE << " build, " << kCompiler << '\n'
        << Processor() << ", " << std::thread::hardware_concurrency() << " threads, " << Kernel() << ", load " << Load()
        << '\n'
        << "libxml2 " << LIBXML_DOTTED_VERSION << ", pugixml " << PUGIXML_VERSION / 1000 << '.'
        << PUGIXML_VERSION % 1000 / 10 << ", Google Benchmark " << KAXML_BENCH_BENCHMARK_VERSION << '\n';
    out << "medians of " << options.repetitions << (options.usesCpuTime ? ", processor time\n" : ", elapsed time\n");
    for (const std::string& reason : reasonsNotToQuote)
        out << "DO NOT QUOTE: " << reason << '\n';
    out << '\n';
}

} // namespace bench

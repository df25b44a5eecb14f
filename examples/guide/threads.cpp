#include <kaxml/kaxml.h>

#include <atomic>
#include <iostream>
#include <thread>
#include <vector>

namespace {

// Everything that a thread works with is its own: schema, factory, instances.
double PowerOf(const std::wstring& folder) {
    KAXML::CKaSchema schema(L"temporary", L"temporary", nullptr);
    schema.SetSearchPath(folder.c_str());
    schema.ReadXML((folder + L"/Water.01.02.kaschema.xml").c_str());
    double total = 0;
    KAXML::KaParseCallables callables; // called on the thread that parses
    callables.instance = [&total](KAXML::CKaInstance& instance) {
        double power = 0;
        if (instance.GetPropertyValue(L"Power", false) != nullptr)
            instance.GetPropertyValue(L"Power", &power);
        total += power;
    };
    KAXML::ParseKaInstanceFile((folder + L"/water.kainstance.xml").c_str(), &schema, callables);
    return total;
}

} // namespace

int main(int, char** arguments) {
    const std::wstring folder = KAXML::ToWString(arguments[1]);
    std::atomic<int> summaries{0}; // the callable of the log is called on all threads
    const KAXML::CScopedLogging logging([&summaries](KAXML::LOG_SEV severity, const wchar_t*, const wchar_t*) {
        summaries += severity == KAXML::LOG_INFO ? 1 : 0;
    });

    std::vector<double> totals(4);
    std::vector<std::thread> threads;
    for (double& total : totals)
        threads.emplace_back([&total, &folder] {
            try {
                total = PowerOf(folder);
            } catch (...) { // nothing may leave a thread
                std::cerr << KAXML::ToUtf8(KAXML::DescribeCurrentException()) << '\n';
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    for (const double total : totals)
        std::cout << total << " kW\n";
    std::cout << summaries << " documents\n";
}

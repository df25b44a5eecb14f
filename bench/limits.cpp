#include <kaxml/kaxml.h>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <malloc.h>
#include <string>
#include <vector>

// The limits of the readers, each at two sizes: the ratio of the two times shows whether the work
// grows with the input only. "peakMB" is the most memory that the run held at once above what the
// process held before, "perByte" the same in relation to the bytes read.

namespace {

namespace fs = std::filesystem;

constexpr double kMegabyte = 1 << 20;
const std::string kUri = "http://corvane.example/schemas/Corvane.KAXML.2.0";

// A document with texts that are repeated as often as the size says, "%" standing for the number.
struct Limit {
    const char* name;
    std::int64_t size;
    std::string opening;
    std::vector<std::string> repeated;
    std::string closing;
};

void Write(std::ostream& out, const Limit& limit, std::int64_t size) {
    out << limit.opening;
    for (const std::string& text : limit.repeated) {
        const std::size_t at = text.find('%');
        for (std::int64_t i = 0; i < size; ++i)
            if (at == text.npos)
                out << text;
            else
                out << text.substr(0, at) << i << text.substr(at + 1);
    }
    out << limit.closing;
}

// A line of the process's status, in bytes.
double Status(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with(name))
            return std::strtod(line.c_str() + name.size(), nullptr) * 1024;
    return 0;
}

// A folder of files that goes with its scope, and is the current one during it.
struct Folder {
    Folder() {
        std::string pattern = fs::temp_directory_path() / "kaxml-bench-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr)
            std::abort();
        fs::current_path(pattern);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() {
        std::error_code error;
        const fs::path folder = fs::current_path(error);
        fs::current_path(before, error);
        fs::remove_all(folder, error);
    }
    const fs::path before = fs::current_path();
};

template <typename Read> void Run(benchmark::State& state, Read read) {
    double size = 0;
    for (const auto& entry : fs::directory_iterator("."))
        size += static_cast<double>(entry.file_size());
    KAXML::CKaSchema::FreeRecycledValues();
    malloc_trim(0);
    const double before = Status("VmRSS:");
    std::ofstream("/proc/self/clear_refs") << "5"; // the peak counts from here
    for (auto _ : state)
        read();
    const double peak = Status("VmHWM:") - before;
    state.counters["MB"] = size / kMegabyte;
    state.counters["peakMB"] = peak / kMegabyte;
    state.counters["perByte"] = peak / size;
}

// Knows the class "Item" only.
struct Factory final : KAXML::IKaInstanceFactory {
    explicit Factory(KAXML::CKaClass* kaClass) : item(kaClass) {}
    KAXML::CKaInstance* CreateKaInstance(const wchar_t*, const wchar_t* name, int*) override {
        return item->TypeName() == name ? new KAXML::CKaInstance(item) : nullptr;
    }
    KAXML::CKaClass* item;
};

void ReadInstances(benchmark::State& state, const Limit& limit) {
    const Folder folder;
    KAXML::CKaSchema schema(L"Bench", L"b", nullptr);
    KAXML::CKaClass* const item = schema.CreateKaClass(L"Item", L"", KAXML::KA_DOMAIN_CLASS | KAXML::KA_STRUCT_CLASS);
    item->AddKaProperty(L"Tag", L"string", L"");
    item->AddKaProperty(L"Names", L"string", L"")->SetMaxOccurs(L"unbounded");
    item->AddKaProperty(L"Inner", L"Item", L"");
    for (std::int64_t i = 0; limit.name == std::string("Properties") && i < 2 * limit.size; ++i)
        item->AddKaProperty(L"P" + std::to_wstring(i), L"string", L"");
    std::ofstream out("document.xml");
    Write(out << "<KaInstanceXML xmlns='" << kUri << "'>", limit, state.range(0));
    out << "</KaInstanceXML>" << std::flush;
    Factory factory(item);
    Run(state, [&] {
        KAXML::ParseKaInstanceXML(
            1, L"document.xml", &schema, nullptr, nullptr, [](auto, void*, KAXML::CKaInstance*) { return 0; },
            [](auto, void*, KAXML::KaRelationshipInstance*) { return 0; }, nullptr, nullptr, nullptr, &factory,
            KAXML::SKIP_UNRECOGNIZED_CLASSES | KAXML::IGNORE_UNRECOGNIZED_PROPERTIES);
    });
}

// One schema file, or a chain of so many of them when nothing is repeated in one.
void ReadSchemas(benchmark::State& state, const Limit& limit) {
    const Folder folder;
    const std::int64_t files = limit.repeated.empty() ? state.range(0) : 1;
    for (std::int64_t i = 0; i < files; ++i) {
        std::ofstream out("S" + std::to_string(i) + ".01.00.kaschema.xml");
        out << "<KaSchema xmlns='" << kUri << "' schemaName='S" << i << "' nameSpacePrefix='s' version='1.0'>";
        if (i + 1 < files)
            out << "<KaSchemaReference name='S" << i + 1 << "' prefix='r' version='1.0'/>";
        Write(out, limit, state.range(0));
        out << "</KaSchema>";
    }
    Run(state, [] { KAXML::CKaSchema(L"temporary", L"temporary", nullptr).ReadXML(L"S0.01.00.kaschema.xml"); });
}

void Register(const Limit& limit, void (*run)(benchmark::State&, const Limit&)) {
    benchmark::RegisterBenchmark((std::string("Limits/") + limit.name).c_str(),
                                 [=](benchmark::State& state) { run(state, limit); })
        ->Arg(limit.size)
        ->Arg(2 * limit.size)
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
}

const bool isRegistered = [] {
    const std::string megabyte(1 << 20, 'x');
    const std::string property = "<KaProperty propertyName='P%' typeName='int'/>";
    const Limit instances[] = {
        {"SkippedDepth", 500'000, "<No>", {"<a>", "</a>"}, "</No>"},
        {"StructDepth", 500, "<Item>", {"<Inner>", "</Inner>"}, "</Item>"},
        {"Projects", 5'000, "", {"<Project name='%'/>"}, ""},
        {"TextMegabytes", 100, "<Item><Tag>", {megabyte}, "</Tag></Item>"},
        {"CDataMegabytes", 100, "<Item><Tag><![CDATA[", {megabyte}, "]]></Tag></Item>"},
        {"AttributeMegabytes", 100, "<Item id='", {megabyte}, "'/>"},
        {"Attributes", 50'000, "<Item", {" a%='v'"}, "/>"},
        {"Declarations", 4'999, "<Item", {" xmlns:a%='v'"}, "/>"},
        {"Instances", 500'000, "", {"<Item id='%'><Tag>tag</Tag></Item>"}, ""},
        {"Properties", 10'000, "<Item>", {"<P%/>"}, "</Item>"},
        {"SkippedProperties", 50'000, "<Item>", {"<N%/>"}, "</Item>"},
        {"RepeatedArrays", 10'000, "<Item>", {"<Names/>"}, "</Item>"},
    };
    const Limit schemas[] = {
        {"SchemaClasses", 5'000, "", {"<KaClass typeName='C%'/>"}, ""},
        {"SchemaClassesOfOneName", 2'000, "", {"<KaClass typeName='C'/>"}, ""},
        {"SchemaProperties",
         5'000,
         "<KaClass typeName='C'>",
         {"<KaProperty propertyName='P%' typeName='int'/>"},
         "</KaClass>"},
        {"SchemaAttributeMegabytes", 100, "<KaClass typeName='C' description='", {megabyte}, "'/>"},
        {"SchemaChain", 100, "", {}, ""},
    };
    for (const Limit& limit : instances)
        Register(limit, &ReadInstances);
    for (const Limit& limit : schemas)
        Register(limit, &ReadSchemas);
    return true;
}();

} // namespace

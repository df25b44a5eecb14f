#include "document.h"

#include "text.h"

#include <chrono>
#include <iostream>
#include <stdexcept>

namespace plant {
namespace {

// The state behind the callbacks, which get it as their context.
struct Collector {
    Document document;
    std::vector<std::size_t> openProjects;
};

Collector& CollectorOf(void* context) { return *static_cast<Collector*>(context); }

void CountInProject(Collector& collector) {
    if (!collector.openProjects.empty())
        ++collector.document.projects[collector.openProjects.back()].instanceCount;
}

int OnBegin(KAXML::CKaSchema*, void* context, const wchar_t* scope, KAXML::XMLAttributes*) {
    CollectorOf(context).document.isInstanceDocument = true;
    CollectorOf(context).document.scope = scope;
    return 0;
}

int OnInstance(KAXML::CKaSchema*, void* context, KAXML::CKaInstance* instance) {
    CollectorOf(context).document.instances.emplace_back(*instance);
    CountInProject(CollectorOf(context));
    return 0;
}

int OnRelationship(KAXML::CKaSchema*, void* context, KAXML::KaRelationshipInstance* relationship) {
    CollectorOf(context).document.relationships.emplace_back(*relationship);
    CountInProject(CollectorOf(context));
    return 0;
}

int OnProject(KAXML::CKaSchema*, void* context, bool isStart, const wchar_t*, KAXML::XMLAttributes* attributes) {
    Collector& collector = CollectorOf(context);
    if (!isStart) {
        collector.openProjects.pop_back();
        return 0;
    }
    std::wstring name = L"(no name)";
    attributes->GetValue(L"name", name);
    std::vector<Project>& projects = collector.document.projects;
    projects.push_back({name, collector.openProjects.size(), 0});
    collector.openProjects.push_back(projects.size() - 1);
    return 0;
}

// Called just before the parse throws. Unlike the exception it says where in a text a dump is.
void OnError(const wchar_t* report, void*) { std::cerr << Utf8(report) << '\n'; }

Document Read(int isUrl, const wchar_t* source, const ParseSettings& settings) {
    Collector collector;
    KAXML::ParseKaInstanceXML(isUrl, source, settings.schema, &collector, &OnBegin, &OnInstance, &OnRelationship,
                              &OnProject, nullptr, &OnError, settings.factory, settings.flags);
    // Documents with another root are skipped without an error.
    if (!collector.document.isInstanceDocument)
        throw std::runtime_error("the document's root is not KaInstanceXML, so it holds no instances");
    return std::move(collector.document);
}

int DropInstance(KAXML::CKaSchema*, void*, KAXML::CKaInstance*) { return 0; }
int DropRelationship(KAXML::CKaSchema*, void*, KAXML::KaRelationshipInstance*) { return 0; }

void ParseAndDrop(const std::wstring& file, const ParseSettings& settings) {
    KAXML::ParseKaInstanceXML(1, file.c_str(), settings.schema, nullptr, nullptr, &DropInstance, &DropRelationship,
                              nullptr, nullptr, nullptr, settings.factory, settings.flags);
}

} // namespace

Document ReadDocumentFile(const std::filesystem::path& file, const ParseSettings& settings) {
    return Read(1, file.wstring().c_str(), settings);
}

Document ReadDocumentText(const std::wstring& xml, const ParseSettings& settings) {
    return Read(0, xml.c_str(), settings);
}

ParseRate MeasureParseRate(const std::filesystem::path& file, const ParseSettings& settings) {
    using Clock = std::chrono::steady_clock;
    const double enoughSeconds = 0.5;
    ParseRate rate{static_cast<double>(std::filesystem::file_size(file)) / 1e6, 0, 0};
    const std::wstring path = file.wstring();
    const Clock::time_point start = Clock::now();
    double seconds = 0;
    while (seconds < enoughSeconds) {
        ParseAndDrop(path, settings);
        ++rate.parseCount;
        seconds = std::chrono::duration<double>(Clock::now() - start).count();
    }
    rate.megabytesPerSecond = rate.megabytes * rate.parseCount / seconds;
    return rate;
}

} // namespace plant

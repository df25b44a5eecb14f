#include "report.h"

#include "table.h"
#include "text.h"

#include <iomanip>
#include <map>

namespace plant {
namespace {

void PrintSchema(std::ostream& out, KAXML::CKaSchema& schema, const std::filesystem::path& file,
                 const std::string& indent) {
    out << indent << Utf8(schema.GetSchemaName()) << ' ' << Utf8(schema.VersionString())
        << " (prefix: " << Utf8(schema.GetSchemaPrefix()) << ", classes: " << schema.GetKaClassCount()
        << ", relationship classes: " << schema.GetKaRelationshipClassCount() << ")\n"
        << indent << "    " << Utf8(schema.GetDescription()) << '\n'
        << indent << "    from " << Utf8(file.wstring()) << '\n';
}

void PrintReferences(std::ostream& out, KAXML::CKaSchema& schema, const std::wstring& searchPath,
                     const std::string& indent) {
    for (const auto* reference : ReferencesOf(schema)) {
        const std::wstring fileName = reference->m_schemaName + L"." + reference->m_versionString + L".kaschema.xml";
        if (!reference->GetSchema())
            continue;
        PrintSchema(out, *reference->GetSchema(), FindSchemaFile(fileName, searchPath), indent);
        PrintReferences(out, *reference->GetSchema(), searchPath, indent + "  ");
    }
}

std::wstring TypeInWords(const KAXML::CKaClass& kaClass) {
    std::wstring words;
    const auto add = [&words](const wchar_t* word) { words += (words.empty() ? L"" : L", ") + std::wstring(word); };
    if (kaClass.IsDomainClass())
        add(L"domain");
    if (kaClass.IsStruct())
        add(L"struct");
    if (kaClass.IsCustomAttributeClass())
        add(L"custom attribute");
    if (dynamic_cast<const KAXML::CKaRelationshipClass*>(&kaClass))
        add(L"relationship");
    return words;
}

using Counts = std::map<std::wstring, std::size_t>;

// By full name, so that two loaded copies of one schema count as one.
Counts CountByClass(const Document& document) {
    Counts counts;
    for (const auto& instance : document.instances)
        ++counts[instance.GetKaClass()->FullName()];
    for (const auto& relationship : document.relationships)
        ++counts[relationship.GetKaClass()->FullName()];
    return counts;
}

void AddRow(Table& table, const KAXML::CKaClass& kaClass, const Counts& counts) {
    const auto count = counts.find(kaClass.FullName());
    table.Add({kaClass.FullName(), kaClass.GetBaseClass(), TypeInWords(kaClass),
               std::to_wstring(kaClass.GetKaPropertyCount()),
               count == counts.end() ? L"" : std::to_wstring(count->second)});
}

} // namespace

void PrintHeading(std::ostream& out, const char* heading) {
    out << '\n' << heading << '\n' << std::string(std::char_traits<char>::length(heading), '=') << '\n';
}

void PrintSchemas(std::ostream& out, const std::vector<LoadedSchema>& schemas) {
    PrintHeading(out, "Schemas");
    for (const LoadedSchema& loaded : schemas) {
        PrintSchema(out, *loaded.schema, loaded.file, "");
        PrintReferences(out, *loaded.schema, loaded.schema->GetSearchPath(), "  ");
    }
}

void PrintClasses(std::ostream& out, const std::vector<LoadedSchema>& schemas, const Document& document) {
    PrintHeading(out, "Classes");
    const Counts counts = CountByClass(document);
    Table table({L"Class", L"Base class", L"Type", L"Properties", L"Instances"});
    for (const KAXML::CKaSchema* schema : WithReferences(PointersTo(schemas))) {
        for (unsigned int i = 0; i < schema->GetKaClassCount(); ++i)
            AddRow(table, *schema->GetKaClassByIndex(i), counts);
        for (unsigned int i = 0; i < schema->GetKaRelationshipClassCount(); ++i)
            AddRow(table, *schema->GetKaRelationshipClass(i), counts);
    }
    table.Print(out);
}

void PrintProjects(std::ostream& out, const Document& document) {
    PrintHeading(out, "Projects");
    out << "The document is about '" << Utf8(document.scope) << "': " << document.instances.size() << " instances, "
        << document.relationships.size() << " relationships.\n";
    for (const Project& project : document.projects)
        out << std::string(2 * project.depth + 2, ' ') << Utf8(project.name) << ": " << project.instanceCount << '\n';
}

void PrintLog(std::ostream& out, const std::vector<LogEntry>& entries) {
    std::map<KAXML::LOG_SEV, int> counts;
    for (const LogEntry& entry : entries)
        ++counts[entry.severity];
    out << "errors: " << counts[KAXML::LOG_ERROR] << ", warnings: " << counts[KAXML::LOG_WARNING]
        << ", notes: " << counts[KAXML::LOG_INFO] << ", traces: " << counts[KAXML::LOG_TRACE] << '\n';
    for (const LogEntry& entry : entries)
        if (entry.severity == KAXML::LOG_WARNING || entry.severity == KAXML::LOG_INFO)
            out << (entry.severity == KAXML::LOG_WARNING ? "  warning: " : "  note: ")
                << Utf8(OneLine(entry.message, 200)) << '\n';
}

void PrintRate(std::ostream& out, const ParseRate& rate) {
    PrintHeading(out, "Speed");
    out << std::fixed << std::setprecision(3) << rate.megabytes << " MB, parsed " << rate.parseCount << " times at "
        << std::setprecision(1) << rate.megabytesPerSecond << " MB/s\n";
}

} // namespace plant

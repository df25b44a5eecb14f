#include "round_trip.h"

#include "compare.h"
#include "schemas.h"
#include "text.h"

#include <stdexcept>
#include <system_error>

namespace plant {
namespace {

std::filesystem::path Save(const KAXML::CKaSchema& schema, const std::filesystem::path& folder) {
    const std::filesystem::path file = folder / schema.OfficialFilename();
    if (schema.WriteXML(file.wstring().c_str()) != 0)
        throw std::runtime_error("cannot save " + file.string());
    return file;
}

// The library writes texts as they are; what means something in XML has to be escaped before.
void EscapeValue(KAXML::KaValueBase& value);

void EscapeValues(KAXML::CKaInstance& instance) {
    for (unsigned int i = 0; i < instance.GetKaValueCount(); ++i)
        EscapeValue(*instance.GetKaValue(i));
}

void EscapeValue(KAXML::KaValueBase& value) {
    if (auto* primitive = dynamic_cast<KAXML::CKaValue*>(&value)) {
        primitive->Value() = EscapeXml(primitive->Value());
    } else if (auto* array = dynamic_cast<KAXML::KaArrayValue*>(&value)) {
        for (unsigned int i = 0; i < array->GetLength(); ++i)
            if (KAXML::KaValueBase* member = array->GetValue(i))
                EscapeValue(*member);
    } else if (auto* structure = dynamic_cast<KAXML::KaStructValue*>(&value)) {
        if (structure->GetValue())
            EscapeValues(*structure->GetValue());
    }
}

std::wstring Attribute(const wchar_t* name, const std::wstring& value) {
    return std::wstring(L" ") + name + L"='" + EscapeXml(value) + L"'";
}

void AppendInstance(std::wstring& xml, const KAXML::CKaInstance& instance, const std::wstring& ends) {
    KAXML::CKaInstance escaped(instance);
    EscapeValues(escaped);
    // The library would write the id as "instanceid", which its reader does not look for.
    escaped.SetInstanceID(L"");
    const std::wstring schemaNamespace = instance.GetKaClass()->GetKaSchema()->XmlNamespace();
    escaped.AppendAsXml(xml, Attribute(L"xmlns", schemaNamespace) + Attribute(L"id", instance.InstanceID()) + ends);
    xml += L'\n';
}

std::wstring AsText(const Document& document) {
    std::wstring xml = L"<KaInstanceXML" + Attribute(L"xmlns", KAXML::KAXML_NAMESPACE_URI) +
                       Attribute(L"scope", document.scope) + L">\n";
    for (const auto& instance : document.instances)
        AppendInstance(xml, instance, L"");
    for (const auto& relationship : document.relationships)
        AppendInstance(xml, relationship,
                       Attribute(L"sourceInstanceID", relationship.GetSourceID()) +
                           Attribute(L"targetInstanceID", relationship.GetTargetID()));
    return xml + L"</KaInstanceXML>\n";
}

// Values need no adjustment before they are compared: the reader takes tabs and line breaks off
// both ends of a value, so none of those it delivered has any there to lose.
template <typename Instances> std::wstring DifferenceIn(const Instances& expected, const Instances& found) {
    if (expected.size() != found.size())
        return std::to_wstring(expected.size()) + L" became " + std::to_wstring(found.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const std::wstring difference = FirstDifference(FactsOf(expected[i]), FactsOf(found[i]));
        if (!difference.empty())
            return expected[i].TypeName() + L" " + expected[i].InstanceID() + L": " + difference;
    }
    return {};
}

bool Report(std::ostream& out, const std::wstring& what, const std::wstring& difference) {
    out << "  " << Utf8(what) << ": " << (difference.empty() ? "unchanged" : "CHANGED, " + Utf8(difference)) << '\n';
    return difference.empty();
}

} // namespace

TemporaryFolder::TemporaryFolder()
    : m_path(std::filesystem::temp_directory_path() / (L"kaxml-plant-" + KAXML::CreateGuid())) {
    std::filesystem::create_directory(m_path);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

bool RoundTripSchemas(std::ostream& out, const std::vector<KAXML::CKaSchema*>& schemas,
                      const std::filesystem::path& folder) {
    const std::vector<KAXML::CKaSchema*> all = WithReferences(schemas);
    // All are saved before any is read: reading one looks for those it references.
    for (const auto* schema : all)
        Save(*schema, folder);
    bool isUnchanged = true;
    for (auto* schema : all) {
        const LoadedSchema saved = LoadSchema(folder / schema->OfficialFilename(), folder.wstring());
        const std::wstring difference = FirstDifference(FactsOf(*schema), FactsOf(*saved.schema));
        isUnchanged &= Report(out, schema->OfficialFilename(), difference);
    }
    return isUnchanged;
}

bool RoundTripInstances(std::ostream& out, const Document& document, const ParseSettings& settings) {
    const std::wstring xml = AsText(document);
    const Document found = ReadDocumentText(xml, settings);
    out << "  written as " << xml.size() << " characters of text and parsed again\n";
    const std::wstring instances = std::to_wstring(document.instances.size()) + L" instances";
    const std::wstring relationships = std::to_wstring(document.relationships.size()) + L" relationships";
    const bool isUnchanged = Report(out, instances, DifferenceIn(document.instances, found.instances));
    return Report(out, relationships, DifferenceIn(document.relationships, found.relationships)) && isUnchanged;
}

} // namespace plant

#include <kaxml/kaschemaxml/schema/class.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/relationship_class.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaschemaxml/xml/elements.h>
#include <kaxml/kaschemaxml/xml/schema_document.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/check_hresult.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/platform/environment.h>
#include <kaxml/platform/numbers.h>

namespace KAXML {

using namespace std::string_view_literals;

namespace {

// The directories for a schema's referenced files: the current one, then the environment's, then
// the schema's own.
std::wstring SearchPathOf(const CKaSchema& owner) {
    std::wstring path;
    const bool hasCurrent = GetCurrentDirectoryW(path);
    std::wstring fromEnvironment;
    if (GetEnvironmentVariableW("KASCHEMA_PATH", fromEnvironment) && !fromEnvironment.empty()) {
        if (hasCurrent)
            path += L';';
        path += fromEnvironment;
    }
    if (*owner.GetSearchPath() != L'\0') {
        path += L';';
        path += owner.GetSearchPath();
    }
    return path;
}

std::wstring FindSchemaFile(const std::wstring& fileName, const CKaSchema& owner) {
    const std::wstring searchPath = SearchPathOf(owner);
    std::wstring found;
    if (!SearchPathW(searchPath, fileName, found))
        throw KAXMLRuntimeError(Concat(L"The referenced KaSchemaXML file '", fileName,
                                       L"' could not be found searching current directory plus KASCHEMA_PATH: '",
                                       searchPath, L"'"),
                                L"CKaSchemaReference::ReadXML");
    return found;
}

} // namespace

void CKaSchemaReference::ReadAttributes(IXMLDOMNode* node) {
    IXMLDOMNamedNodeMap attributes = node->get_attributes();
    while (const IXMLDOMAttribute* const attribute = attributes.nextNode()) {
        const std::wstring& name = attribute->get_nodeName();
        const std::wstring_view value = attribute->get_text();
        if (name == L"name"sv) {
            m_schemaName = value;
        } else if (name == L"version"sv) {
            std::uint32_t major = 0;
            std::uint32_t minor = 0;
            CKaSchema::ParseVersionString(value.data(), &major, &minor);
            CKaSchema::FormatVersionString(m_versionString, major, minor);
        } else if (name == L"prefix"sv) {
            m_schemaPrefix = value;
        } else {
            throw KAXMLFormatError(
                Concat(L"KaSchemaReference contains unrecognized attribute '", name, L"' with value='", value, L"'"));
        }
    }
}

int CKaSchemaReference::ReadXML(CKaSchema* owner, IXMLDOMDocument2* document, IXMLDOMNode* node) {
    RequireNotNull(owner, L"owner", L"CKaSchemaReference::ReadXML");
    RequireNotNull(node, L"node", L"CKaSchemaReference::ReadXML");
    ReadAttributes(node);
    if (owner->FindReferencedSchema(m_schemaName.c_str(), m_versionString.c_str()) != nullptr)
        return 0;
    const std::wstring fileName = Concat(m_schemaName, L".", m_versionString, L".kaschema.xml");
    const std::wstring path = FindSchemaFile(fileName, *owner);
    const SchemaDocument* const referrer = dynamic_cast<const SchemaDocument*>(document);
    if (referrer != nullptr)
        referrer->RequireNotOnTheWayHere(path);
    auto schema = std::make_unique<CKaSchema>(m_schemaName, m_schemaPrefix, std::wstring());
    // The referenced file's own references are found where this one was.
    schema->SetSearchPath(owner->GetSearchPath());
    const int status = schema->ReadFile(path, referrer);
    if (status != 0)
        throw KAXMLFormatError(
            Concat(L"The referenced KaSchemaXML file '", path, L"' was refused with status ", FormatInt(status)));
    CKaSchemaReference loaded(*this);
    loaded.m_pKaSchema = schema.get();
    owner->AddReference(loaded);
    m_pKaSchema = schema.release();
    return 0;
}

int CKaSchemaReference::WriteXML(IXMLDOMDocument2* document, IXMLDOMNode* parent) const {
    RequireNotNull(document, L"document", L"CKaSchemaReference::WriteXML");
    RequireNotNull(parent, L"parent", L"CKaSchemaReference::WriteXML");
    IXMLDOMElement* const element = CreateSchemaElement(document, parent, L"KaSchemaReference"sv);
    CHECK_HRESULT(element->setAttribute(L"name"sv, m_schemaName),
                  L"pSchemaRefElement->setAttribute (L\"name\", m_schemaName.c_str())");
    CHECK_HRESULT(element->setAttribute(L"version"sv, m_versionString),
                  L"pSchemaRefElement->setAttribute (L\"version\", m_versionString.c_str())");
    CHECK_HRESULT(element->setAttribute(L"prefix"sv, m_schemaPrefix),
                  L"pSchemaRefElement->setAttribute (L\"prefix\", m_schemaPrefix.c_str())");
    return 0;
}

} // namespace KAXML

#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/relationship_class.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaschemaxml/xml/elements.h>
#include <kaxml/kaschemaxml/xml/write_warnings.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/check_hresult.h>
#include <kaxml/kaxml/core/format.h>

namespace KAXML {

using namespace std::string_view_literals;

namespace {

// The root element with its attributes in the order of the format. Their texts are set afterwards,
// so that one rule for what XML can hold, and one way of naming what it cannot, serves all.
std::wstring DocumentTemplate(const CKaSchema& schema) {
    std::wstring text = L"<?xml version='1.0' encoding='UTF-8'?><KaSchema schemaName='' version='' ";
    if (*schema.GetDisplayLabel() != L'\0')
        text += L"displayLabel='' ";
    text += L"nameSpacePrefix='' ";
    if (*schema.GetDescription() != L'\0')
        text += L"description='' ";
    return Concat(text, L"xmlns='", KAXML_NAMESPACE_URI, L"' xmlns:ka='", KAXML_NAMESPACE_URI, L"'></KaSchema>");
}

void FillTemplate(const CKaSchema& schema, IXMLDOMElement* root) {
    root->setAttribute(L"schemaName"sv, schema.GetSchemaName());
    root->setAttribute(L"version"sv, schema.VersionString());
    if (*schema.GetDisplayLabel() != L'\0')
        root->setAttribute(L"displayLabel"sv, schema.GetDisplayLabel());
    root->setAttribute(L"nameSpacePrefix"sv, schema.GetSchemaPrefix());
    if (*schema.GetDescription() != L'\0')
        root->setAttribute(L"description"sv, schema.GetDescription());
}

IXMLDOMElement* FindRoot(const IXMLDOMDocument2& document) {
    IXMLDOMElement* element = nullptr;
    for (IXMLDOMNode* node = document.get_firstChild(); node != nullptr && element == nullptr;
         node = node->get_nextSibling())
        static_cast<void>(node->QueryInterface(&element));
    return element;
}

void DeclareReference(IXMLDOMElement* root, const CKaSchemaReference& reference) {
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    CKaSchema::ParseVersionString(reference.m_versionString.c_str(), &major, &minor);
    std::wstring version;
    CKaSchema::FormatVersionString(version, major, minor);
    const std::wstring xmlNamespace = Concat(reference.m_schemaName, L".", version);
    CHECK_HRESULT(root->setAttribute(L"xmlns:" + reference.m_schemaPrefix, xmlNamespace),
                  L"pKaSchemaElement->setAttribute (namespaceAttr, xmlNamespace.c_str())");
}

// Writes the classes of a list whose custom attribute flag is as wanted.
template <typename List>
int WriteClasses(const List& classes, bool isCustomAttributeClass, IXMLDOMDocument2* document, IXMLDOMNode* root) {
    for (const auto& kaClass : classes) {
        if ((kaClass->IsCustomAttributeClass() != 0) != isCustomAttributeClass)
            continue;
        if (const int status = kaClass->WriteXML(document, root))
            return status;
    }
    return 0;
}

} // namespace

int CKaSchema::WriteXML(const wchar_t* path) const {
    RequireNotNull(path, L"path", L"CKaSchema::WriteXML");
    IXMLDOMDocument2 document;
    if (!document.loadXML(DocumentTemplate(*this)))
        throw KAXMLRuntimeError(L"Failed to create empty XML document");
    IXMLDOMElement* const root = FindRoot(document);
    FillTemplate(*this, root);
    for (const CKaSchemaReference& reference : m_references)
        DeclareReference(root, reference);
    for (const CKaSchemaReference& reference : m_references)
        reference.WriteXML(&document, root);
    int status = WriteCustomAttributesToXML(&document, root);
    for (const bool isCustomAttributeClass : {true, false}) {
        if (status == 0)
            status = WriteClasses(m_classes, isCustomAttributeClass, &document, root);
        if (status == 0)
            status = WriteClasses(m_relationshipClasses, isCustomAttributeClass, &document, root);
    }
    if (status != 0)
        return status;
    LogWriteWarnings(*this);
    CHECK_HRESULT(document.save(path), L"pXmlDoc->save(_variant_t(kaSchemaXmlFile))");
    return 0;
}

} // namespace KAXML

#include <kaxml/kaschemaxml/schema/class_adder.h>
#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/relationship_class.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaschemaxml/xml/elements.h>
#include <kaxml/kaschemaxml/xml/schema_document.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/check_hresult.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/core/log_message.h>

namespace KAXML {

using namespace std::string_view_literals;

namespace {

constexpr int kForeignNamespace = 1000;
constexpr int kLegacyNamespace = 1001;
constexpr int kNoSchemaElement = 32768;
constexpr wchar_t kPlaceholder[] = L"temporary";
constexpr std::size_t kLogTextLength = 1024;

void LogCut(std::wstring text) {
    if (text.size() > kLogTextLength)
        text.resize(kLogTextLength);
    LogMessage(LOG_ERROR, L"KAXML", text.c_str());
}

HRESULT CheckXmlLoad(const IXMLDOMDocument2& document) {
    const IXMLDOMParseError& error = document.get_parseError();
    if (error.errorCode == 0)
        return 0;
    LogFormatted(LOG_ERROR, L"line %d, position %d parsing KaSchema file %s. %s",
                 {error.line, error.linepos, error.url, error.reason});
    return 1;
}

IXMLDOMNode* FindRoot(const IXMLDOMDocument2& document) {
    IXMLDOMNode* node = document.get_firstChild();
    while (node != nullptr && (node->get_nodeType() != NODE_ELEMENT || node->get_baseName() != L"KaSchema"sv))
        node = node->get_nextSibling();
    return node;
}

// 0, or the status that a root of another namespace gives.
int CheckNamespace(const IXMLDOMNode& root, const std::wstring& path) {
    const std::wstring& uri = root.get_namespaceURI();
    if (EqualsIgnoringCase(uri, KAXML_NAMESPACE_URI))
        return 0;
    LogCut(FormatText(L"Import file '%s' is using namespace '%s', which is not compatible with KAXML 2.0. "
                      L"Use namespace '%s'",
                      {path, uri, KAXML_NAMESPACE_URI}));
    return EqualsIgnoringCase(uri, KAXML_LEGACY_NAMESPACE_URI) ? kLegacyNamespace : kForeignNamespace;
}

// A class whose element has been met; the schema owns it once its name is known.
struct DeferredClass {
    std::unique_ptr<CKaClass> owned;
    CKaClass* kaClass;
    IXMLDOMNode* node;
};

using DeferredClasses = std::vector<DeferredClass>;

template <typename Class> void Defer(DeferredClasses& classes, CKaSchema& schema, IXMLDOMNode* node) {
    auto kaClass = std::make_unique<Class>(node->get_baseName().c_str(), &schema, nullptr);
    CKaClass* const pointer = kaClass.get();
    classes.push_back({std::move(kaClass), pointer, node});
}

// First pass: references and the schema's own custom attributes are read, classes are put aside.
int ReadChildren(CKaSchema& schema, IXMLDOMDocument2& document, IXMLDOMNode* root, DeferredClasses& classes) {
    int status = 0;
    for (IXMLDOMNode* child = root->get_firstChild(); child != nullptr && status == 0;
         child = child->get_nextSibling()) {
        const std::wstring& name = child->get_baseName();
        if (name == L"KaCustomAttributes"sv)
            status = schema.ReadCustomAttributesFromXML(&schema, &document, child);
        else if (name == L"KaClass"sv)
            Defer<CKaClass>(classes, schema, child);
        else if (name == L"KaRelationshipClass"sv)
            Defer<CKaRelationshipClass>(classes, schema, child);
        else if (name == L"KaSchemaReference"sv)
            CKaSchemaReference().ReadXML(&schema, &document, child);
        else if (child->get_nodeType() != NODE_COMMENT)
            throw KAXMLFormatError(
                Concat(L"Unrecognized element under KaSchema element: '", child->get_nodeName(), L"'"));
    }
    return status;
}

void AddToSchema(ClassAdder& adder, DeferredClass& deferred) {
    if (auto* const relationshipClass = dynamic_cast<CKaRelationshipClass*>(deferred.kaClass))
        adder.Add(relationshipClass);
    else
        adder.Add(deferred.kaClass);
    static_cast<void>(deferred.owned.release());
}

// Second pass: every class gets its name and joins the schema. Third pass: what the classes hold,
// which may name any of them.
int ReadClasses(CKaSchema& schema, IXMLDOMDocument2& document, DeferredClasses& classes) {
    ClassAdder adder(schema);
    for (DeferredClass& deferred : classes) {
        if (const int status = deferred.kaClass->ReadXMLAttributes(&document, deferred.node))
            return status;
        AddToSchema(adder, deferred);
    }
    for (const DeferredClass& deferred : classes)
        if (const int status = deferred.kaClass->ReadXMLContents(&schema, &document, deferred.node))
            return status;
    return 0;
}

} // namespace

int CKaSchema::ReadXML(const wchar_t* path) {
    return ReadFile(RequireNotNull(path, L"path", L"CKaSchema::ReadXML"), nullptr);
}

int CKaSchema::ReadFile(const std::wstring& path, const SchemaDocument* referrer) {
    SchemaDocument document(*this, path, referrer);
    if (!document.load(path))
        CHECK_HRESULT(CheckXmlLoad(document), L"CheckXmlLoad(pXmlDoc)");
    IXMLDOMNode* const root = FindRoot(document);
    if (root == nullptr) {
        LogCut(FormatText(L"Missing KaSchema element in VEL Schema file %s", {path}));
        return kNoSchemaElement;
    }
    if (const int status = CheckNamespace(*root, path))
        return status;
    ReadRootAttributes(root);
    DeferredClasses classes;
    if (const int status = ReadChildren(*this, document, root, classes))
        return status;
    return ReadClasses(*this, document, classes);
}

void CKaSchema::ReadRootAttributes(IXMLDOMNode* root) {
    IXMLDOMNamedNodeMap attributes = root->get_attributes();
    while (const IXMLDOMAttribute* const attribute = attributes.nextNode()) {
        const std::wstring& name = attribute->get_nodeName();
        const wchar_t* const value = attribute->get_text().data();
        if (name == L"schemaName"sv)
            SetSchemaName(value);
        else if (name == L"nameSpacePrefix"sv)
            SetSchemaPrefix(value);
        else if (name == L"description"sv)
            SetDescription(value);
        else if (name == L"displayLabel"sv)
            SetDisplayLabel(value);
        else if (name == L"version"sv)
            SetVersionString(value);
    }
    if (m_schemaName == kPlaceholder)
        throw KAXMLFormatError(L"KaSchema's schemaName cannot be blank!");
    if (m_schemaPrefix == kPlaceholder)
        throw KAXMLFormatError(L"KaSchema's nameSpacePrefix cannot be blank!");
}

} // namespace KAXML

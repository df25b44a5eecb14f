#include <kaxml/kaschemaxml/schema/class.h>
#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/xml/elements.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/check_hresult.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/core/log_message.h>

namespace KAXML {

using namespace std::string_view_literals;

namespace {

constexpr wchar_t kTypeNameMissing[] = L"Required attribute typeName not found on an KaClass";

bool IsPropertyElement(std::wstring_view name) {
    return name == L"KaProperty"sv || name == L"KaArrayProperty"sv || name == L"KaStructProperty"sv;
}

void LogClassRead(const std::wstring& typeName) {
    if (IsLogging())
        LogFormatted(LOG_TRACE, L"CKaClass::ReadXML (typeName=%s)", {typeName});
}

int ReadProperty(CKaClass& kaClass, IXMLDOMDocument2* document, IXMLDOMNode* node) {
    auto property = std::make_unique<CKaProperty>(&kaClass);
    const int status = property->ReadXML(kaClass.GetKaSchema(), document, node);
    kaClass.AddKaProperty(property.get());
    static_cast<void>(property.release());
    return status;
}

} // namespace

int CKaClass::ReadXML(CKaSchema* schema, IXMLDOMDocument2* document, IXMLDOMNode* node) {
    const int status = ReadXMLAttributes(document, node);
    return status != 0 ? status : ReadXMLContents(schema, document, node);
}

int CKaClass::ReadXMLAttributes(IXMLDOMDocument2*, IXMLDOMNode* node) {
    RequireNotNull(node, L"node", L"CKaClass::ReadXMLAttributes");
    bool hasTypeName = false;
    bool hasIsDomainClass = false;
    IXMLDOMNamedNodeMap attributes = node->get_attributes();
    while (const IXMLDOMAttribute* const attribute = attributes.nextNode()) {
        const std::wstring& name = attribute->get_nodeName();
        const std::wstring_view text = attribute->get_text();
        if (name == L"typeName"sv) {
            SetTypeName(text.data());
            hasTypeName = true;
        } else if (name == L"baseClass"sv) {
            SetBaseClass(text.data());
        } else if (name == L"description"sv) {
            SetDescription(text.data());
        } else if (name == L"displayLabel"sv) {
            SetDisplayLabel(text.data());
        } else if (name == L"isCustomAttributeClass"sv) {
            m_isCustomAttributeClass = IsTrue(text) ? 1 : 0;
        } else if (name == L"isDomainClass"sv) {
            m_isDomainClass = IsTrue(text) ? 1 : 0;
            hasIsDomainClass = true;
        } else if (name == L"isStruct"sv) {
            m_isStruct = IsTrue(text) ? 1 : 0;
        }
    }
    if (!hasTypeName)
        throw KAXMLFormatError(kTypeNameMissing);
    if (!hasIsDomainClass)
        m_isDomainClass = 1;
    LogClassRead(m_typeName);
    return 0;
}

int CKaClass::ReadXMLContents(CKaSchema*, IXMLDOMDocument2* document, IXMLDOMNode* node) {
    RequireNotNull(node, L"node", L"CKaClass::ReadXMLContents");
    LogClassRead(m_typeName);
    int baseClasses = 0;
    for (IXMLDOMNode* child = node->get_firstChild(); child != nullptr; child = child->get_nextSibling()) {
        if (child->get_nodeType() != NODE_ELEMENT)
            continue;
        const std::wstring& name = child->get_baseName();
        int status = 0;
        if (IsPropertyElement(name)) {
            status = ReadProperty(*this, document, child);
        } else if (name == L"KaCustomAttributes"sv) {
            status = ReadCustomAttributesFromXML(m_pKaSchema, document, child);
        } else if (name == L"BaseClass"sv) {
            if (++baseClasses > 1)
                throw KAXMLFormatError(Concat(L"CKaClass typeName=", m_typeName,
                                              L" has more than one BaseClass, which is not supported by kaxml.dll."));
            SetBaseClass(std::wstring(Trimmed(child->get_text())));
        }
        if (status != 0)
            return status;
    }
    return 0;
}

int CKaClass::WriteXML(IXMLDOMDocument2* document, IXMLDOMNode* parent) {
    RequireNotNull(document, L"document", L"CKaClass::WriteXML");
    RequireNotNull(parent, L"parent", L"CKaClass::WriteXML");
    IXMLDOMElement* const element = CreateSchemaElement(document, parent, L"KaClass"sv);
    CHECK_HRESULT(element->setAttribute(L"typeName"sv, TypeName()),
                  L"pElement->setAttribute (L\"typeName\", _variant_t(GetTypeName()))");
    if (*GetDescription() != L'\0')
        CHECK_HRESULT(element->setAttribute(L"description"sv, GetDescription()),
                      L"pElement->setAttribute (L\"description\", _variant_t(GetDescription()))");
    if (!m_displayLabel.empty())
        CHECK_HRESULT(element->setAttribute(L"displayLabel"sv, m_displayLabel),
                      L"pElement->setAttribute (L\"displayLabel\", _variant_t(GetDisplayLabel()))");
    if (m_isCustomAttributeClass != 0)
        CHECK_HRESULT(element->setAttribute(L"isCustomAttributeClass"sv, KAXML_TRUE),
                      L"pElement->setAttribute (L\"isCustomAttributeClass\", _variant_t(KAXML_TRUE))");
    CHECK_HRESULT(
        element->setAttribute(L"isDomainClass"sv, TrueOrFalse(m_isDomainClass)),
        L"pElement->setAttribute (L\"isDomainClass\", _variant_t(IsDomainClass() ? KAXML_TRUE : KAXML_FALSE))");
    if (m_isStruct != 0)
        CHECK_HRESULT(element->setAttribute(L"isStruct"sv, KAXML_TRUE),
                      L"pElement->setAttribute (L\"isStruct\", _variant_t(KAXML_TRUE))");
    WriteBaseClassToXML(document, element);
    int status = WriteCustomAttributesToXML(document, element);
    for (std::size_t i = 0; status == 0 && i < m_properties.size(); ++i)
        status = m_properties[i]->WriteXML(document, element);
    return status;
}

int CKaClass::WriteBaseClassToXML(IXMLDOMDocument2* document, IXMLDOMNode* element) const {
    if (!m_baseClassName.empty())
        AppendText(document, CreateSchemaElement(document, element, L"BaseClass"sv), m_baseClassName);
    return 0;
}

} // namespace KAXML

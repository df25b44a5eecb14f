#include <kaxml/kaschemaxml/schema/class.h>
#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaschemaxml/xml/elements.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/check_hresult.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/core/log_message.h>

namespace KAXML {

using namespace std::string_view_literals;

namespace {

struct RequiredAttributes {
    bool hasTypeName = false;
    bool hasPropertyName = false;
};

// Attributes with an empty value count as absent; an unknown one is reported and ignored.
void ApplyAttribute(CKaProperty& property, const std::wstring& name, std::wstring_view text,
                    RequiredAttributes& required) {
    if (name == L"propertyName"sv) {
        property.SetPropertyName(text.data());
        required.hasPropertyName = true;
    } else if (name == L"typeName"sv) {
        property.SetTypeName(text.data());
        required.hasTypeName = true;
    } else if (name == L"description"sv) {
        property.SetDescription(text.data());
    } else if (name == L"displayLabel"sv) {
        property.SetDisplayLabel(text.data());
    } else if (name == L"minOccurs"sv) {
        property.SetMinOccurs(text.data());
    } else if (name == L"maxOccurs"sv) {
        property.SetMaxOccurs(text.data());
    } else if (name == L"readOnly"sv) {
        property.SetReadOnly(IsTrue(text) ? 1 : 0);
    } else if (name != L"isStruct"sv) {
        // The struct flag always follows from the type's name.
        Log(LOG_WARNING, L"KAXML", Concat(L"Unrecognized xml attribute: ", name, L" with value='", text, L"'."));
    }
}

void ReadAttributes(CKaProperty& property, IXMLDOMNode* node) {
    RequiredAttributes required;
    IXMLDOMNamedNodeMap attributes = node->get_attributes();
    while (const IXMLDOMAttribute* const attribute = attributes.nextNode())
        if (!attribute->get_text().empty())
            ApplyAttribute(property, attribute->get_nodeName(), attribute->get_text(), required);
    if (!required.hasTypeName)
        throw KAXMLFormatError(L"Required attribute typeName not found on an KaProperty");
    if (!required.hasPropertyName)
        throw KAXMLFormatError(L"Required attribute propertyName not found on an KaProperty");
    // Only now: the bounds may stand in either order.
    if (*property.GetMaxOccurs() != L'\0' && *property.GetMinOccurs() == L'\0')
        property.SetMinOccurs(L"0");
}

} // namespace

int CKaProperty::ReadXML(CKaSchema*, IXMLDOMDocument2* document, IXMLDOMNode* node) {
    RequireNotNull(node, L"node", L"CKaProperty::ReadXML");
    ReadAttributes(*this, node);
    CKaSchema* const schema = m_pKaClass == nullptr ? nullptr : m_pKaClass->GetKaSchema();
    int status = 0;
    for (IXMLDOMNode* child = node->get_firstChild(); child != nullptr && status == 0; child = child->get_nextSibling())
        if (child->get_baseName() == L"KaCustomAttributes"sv)
            status = ReadCustomAttributesFromXML(schema, document, child);
    return status;
}

int CKaProperty::WriteXML(IXMLDOMDocument2* document, IXMLDOMNode* parent) const {
    RequireNotNull(document, L"document", L"CKaProperty::WriteXML");
    RequireNotNull(parent, L"parent", L"CKaProperty::WriteXML");
    const bool isPrimitive = CKaSchema::IsPrimitiveType(m_typeName.c_str()) != 0;
    const bool isArray = !m_minOccurs.empty() || !m_maxOccurs.empty();
    const wchar_t* const elementName = isArray ? L"KaArrayProperty" : isPrimitive ? L"KaProperty" : L"KaStructProperty";
    IXMLDOMElement* const element = CreateSchemaElement(document, parent, elementName);
    CHECK_HRESULT(element->setAttribute(L"propertyName"sv, m_propertyName),
                  L"pElement->setAttribute (L\"propertyName\", _variant_t(GetPropertyName()))");
    CHECK_HRESULT(element->setAttribute(L"typeName"sv, m_typeName),
                  L"pElement->setAttribute (L\"typeName\", _variant_t(typeName))");
    if (*GetDescription() != L'\0')
        CHECK_HRESULT(element->setAttribute(L"description"sv, GetDescription()),
                      L"pElement->setAttribute (L\"description\", _variant_t(description))");
    if (!m_displayLabel.empty())
        CHECK_HRESULT(element->setAttribute(L"displayLabel"sv, m_displayLabel),
                      L"pElement->setAttribute (L\"displayLabel\", _variant_t(displayLabel))");
    if (!m_minOccurs.empty())
        CHECK_HRESULT(element->setAttribute(L"minOccurs"sv, m_minOccurs),
                      L"pElement->setAttribute (L\"minOccurs\", _variant_t(minOccurs))");
    if (!m_maxOccurs.empty())
        CHECK_HRESULT(element->setAttribute(L"maxOccurs"sv, m_maxOccurs),
                      L"pElement->setAttribute (L\"maxOccurs\", _variant_t(maxOccurs))");
    if (isArray && !isPrimitive)
        CHECK_HRESULT(element->setAttribute(L"isStruct"sv, KAXML_TRUE),
                      L"pElement->setAttribute (L\"isStruct\", _variant_t(KAXML_TRUE))");
    if (m_readOnly != 0)
        CHECK_HRESULT(element->setAttribute(L"readOnly"sv, KAXML_TRUE),
                      L"pElement->setAttribute (L\"readOnly\", _variant_t(KAXML_TRUE))");
    return WriteCustomAttributesToXML(document, element);
}

} // namespace KAXML

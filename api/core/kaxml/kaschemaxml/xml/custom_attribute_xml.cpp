#include <kaxml/kaschemaxml/instance/custom_attribute.h>
#include <kaxml/kaschemaxml/schema/class.h>
#include <kaxml/kaschemaxml/schema/common.h>
#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/relationship_class.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaschemaxml/xml/elements.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/format.h>

#include <new>

namespace KAXML {

using namespace std::string_view_literals;

namespace {

std::wstring NameOfOwner(const CKaRelationshipClass* owner) {
    return Concat(L"KaRelationshipClass '", owner == nullptr ? L"" : owner->GetTypeName(), L"'");
}

// How a message calls the item that custom attributes are attached to.
std::wstring NameOfItem(const CKaCommon& item) {
    if (const auto* const schema = dynamic_cast<const CKaSchema*>(&item))
        return Concat(L"KaSchema '", schema->GetSchemaName(), L"'");
    if (const auto* const kaClass = dynamic_cast<const CKaClass*>(&item))
        return Concat(L"KaClass '", kaClass->GetTypeName(), L"'");
    if (const auto* const property = dynamic_cast<const CKaProperty*>(&item))
        return Concat(L"KaProperty '", property->GetPropertyName(), L"'");
    if (const auto* const source = dynamic_cast<const CKaSource*>(&item))
        return L"Source of " + NameOfOwner(source->GetOwner());
    if (const auto* const targets = dynamic_cast<const CKaTargets*>(&item))
        return L"Target of " + NameOfOwner(targets->GetOwner());
    return L"an item";
}

[[noreturn]] void ThrowUnexpectedText(const CKaCommon& item, const std::wstring& text) {
    throw KAXMLFormatError(
        Concat(L"Unexpected text '", Trimmed(text), L"' in KaCustomAttributes of ", NameOfItem(item), L"."));
}

CKaClass& ClassOfElement(const CKaSchema& schema, IXMLDOMNode* node) {
    const std::wstring& name = node->get_baseName();
    CKaClass* const found = schema.FindKaClass(name.c_str(), KA_ANY_CLASS_TYPE);
    if (found == nullptr)
        throw KAXMLFormatError(Concat(L"Attempted to use an KaCustomAttribute of type '", name,
                                      L"', but that KaClass has not yet been defined."));
    return *found;
}

KAXMLLogicError NoSuchProperty(const CKaClass& kaClass, const wchar_t* propertyName) {
    return KAXMLLogicError(
        Concat(L"KaClass '", kaClass.TypeName(), L"' does not contain an KaProperty named '", propertyName, L"'."));
}

CKaProperty& RequireProperty(const CKaClass& kaClass, const wchar_t* propertyName) {
    CKaProperty* const property = kaClass.FindProperty(propertyName);
    if (property == nullptr)
        throw NoSuchProperty(kaClass, propertyName);
    return *property;
}

KaArrayValue* RequireArray(KaValueBase* value, const CKaClass& kaClass, const wchar_t* propertyName) {
    auto* const array = dynamic_cast<KaArrayValue*>(value);
    if (array == nullptr)
        throw KAXMLLogicError(
            Concat(L"KaClass '", kaClass.TypeName(), L"'s '", propertyName, L"' KaProperty is not an array!"));
    return array;
}

// Gives a new custom attribute an empty array.
KaArrayValue* AddArray(CKaCustomAttribute& customAttribute, CKaClass& kaClass, const wchar_t* propertyName) {
    CKaProperty& property = RequireProperty(kaClass, propertyName);
    std::unique_ptr<KaValueBase> value(KaValueBase::CreateKaValueForKaProperty(&kaClass, &property));
    KaArrayValue* const array = RequireArray(value.get(), kaClass, propertyName);
    customAttribute.AddKaValue(value.get());
    static_cast<void>(value.release());
    return array;
}

} // namespace

int CKaCommon::ReadCustomAttributesFromXML(CKaSchema* schema, IXMLDOMDocument2* document, IXMLDOMNode* node) {
    RequireNotNull(schema, L"schema", L"CKaCommon::ReadCustomAttributesFromXML");
    RequireNotNull(node, L"node", L"CKaCommon::ReadCustomAttributesFromXML");
    for (IXMLDOMNode* child = node->get_firstChild(); child != nullptr; child = child->get_nextSibling()) {
        const DOMNodeType type = child->get_nodeType();
        if (type == NODE_COMMENT)
            continue;
        if (type == NODE_TEXT || type == NODE_CDATA_SECTION)
            ThrowUnexpectedText(*this, child->get_text());
        auto customAttribute = std::make_unique<CKaCustomAttribute>(&ClassOfElement(*schema, child));
        const int status = customAttribute->ReadXML(document, child);
        if (status != 0)
            return status;
        m_customAttributes.push_back(std::move(customAttribute));
    }
    return 0;
}

int CKaCommon::WriteCustomAttributesToXML(IXMLDOMDocument2* document, IXMLDOMNode* parent) const {
    if (m_customAttributes.empty())
        return 0;
    RequireNotNull(document, L"document", L"CKaCommon::WriteCustomAttributesToXML");
    RequireNotNull(parent, L"parent", L"CKaCommon::WriteCustomAttributesToXML");
    IXMLDOMElement* const element = CreateSchemaElement(document, parent, L"KaCustomAttributes"sv);
    int status = 0;
    for (std::size_t i = 0; status == 0 && i < m_customAttributes.size(); ++i)
        status = m_customAttributes[i]->WriteXML(document, element);
    return status;
}

KaArrayValue* CKaCommon::GetArrayFromCustomAttribute(CKaClass* customAttributeClass, const wchar_t* propertyName,
                                                     int createIfMissing) {
    const CKaClass& kaClass =
        *RequireNotNull(customAttributeClass, L"customAttributeClass", L"CKaCommon::GetArrayFromCustomAttribute");
    if (CKaCustomAttribute* const found = FindKaCustomAttributeByName(kaClass.GetTypeName()))
        return RequireArray(found->GetPropertyValue(propertyName, true), kaClass, propertyName);
    if (createIfMissing == 0)
        return nullptr;
    // Attached before the checks that may fail: the custom attribute then stays.
    m_customAttributes.push_back(std::make_unique<CKaCustomAttribute>(customAttributeClass));
    try {
        return AddArray(*m_customAttributes.back(), *customAttributeClass, propertyName);
    } catch (const std::bad_alloc&) {
        // Without its array it would make every later call fail.
        m_customAttributes.pop_back();
        throw;
    }
}

CKaInstance* CKaCommon::CreateArrayMemberForCustomAttribute(CKaClass* customAttributeClass,
                                                            const wchar_t* propertyName) {
    const CKaClass& kaClass = *RequireNotNull(customAttributeClass, L"customAttributeClass",
                                              L"CKaCommon::CreateArrayMemberForCustomAttribute");
    CKaProperty& property = RequireProperty(kaClass, propertyName);
    KaArrayValue* const array = GetArrayFromCustomAttribute(customAttributeClass, propertyName, 1);
    auto member = std::make_unique<KaStructValue>(&property);
    array->PushBack(member.get());
    return member.release()->GetValue();
}

} // namespace KAXML

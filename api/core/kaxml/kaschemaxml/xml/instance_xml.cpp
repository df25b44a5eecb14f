#include <kaxml/kaschemaxml/instance/instance.h>
#include <kaxml/kaschemaxml/schema/class.h>
#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaschemaxml/xml/elements.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/check_hresult.h>
#include <kaxml/kaxml/core/format.h>

namespace KAXML {

using namespace std::string_view_literals;

namespace {

// The schema in which the names of a class's struct types are looked up.
const CKaSchema& SchemaOf(const CKaClass& kaClass) {
    if (kaClass.GetKaSchema() == nullptr)
        throw KAXMLLogicError(Concat(L"KaClass '", kaClass.TypeName(), L"' has no KaSchema"));
    return *kaClass.GetKaSchema();
}

std::unique_ptr<KaValueBase> ReadMember(const CKaClass& kaClass, CKaProperty& property, IXMLDOMNode* node) {
    if (property.IsStruct() == 0) {
        const std::wstring text = node->get_text();
        return std::make_unique<CKaValue>(&property, text.c_str());
    }
    CKaClass* const structClass = SchemaOf(kaClass).FindKaClass(node->get_baseName().c_str(), KA_ANY_CLASS_TYPE);
    auto member = std::make_unique<KaStructValue>(&property);
    member->ReadXML(structClass, node);
    return member;
}

std::unique_ptr<KaArrayValue> ReadArray(const CKaClass& kaClass, CKaProperty& property, IXMLDOMNode* node) {
    auto array = std::make_unique<KaArrayValue>(&property);
    for (IXMLDOMNode* child = node->get_firstChild(); child != nullptr; child = child->get_nextSibling()) {
        if (child->get_nodeType() == NODE_COMMENT)
            continue;
        if (child->get_baseName() != property.TypeName())
            throw KAXMLFormatError(Concat(L"In KaProperty '", property.PropertyName(), L"' of KaClass '",
                                          kaClass.TypeName(), L"' Array of ", property.TypeName(),
                                          L"'s contains member of type '", child->get_baseName(), L"'"));
        std::unique_ptr<KaValueBase> member = ReadMember(kaClass, property, child);
        array->PushBack(member.get());
        static_cast<void>(member.release());
    }
    return array;
}

std::unique_ptr<KaValueBase> ReadPrimitive(CKaClass* kaClass, CKaProperty& property, IXMLDOMNode* node) {
    std::unique_ptr<KaValueBase> value(KaValueBase::CreateKaValueForKaProperty(kaClass, &property));
    static_cast<CKaValue&>(*value).SetValue(node->get_text());
    return value;
}

// A value's element: named by the property, or as a member of an array by the property's type.
IXMLDOMElement* CreateValueElement(const KaValueBase& value, IXMLDOMDocument2* document, IXMLDOMNode* parent,
                                   const std::wstring& namespaceUri, int isMember) {
    const std::wstring& name = isMember != 0 ? value.GetProperty()->TypeName() : value.PropertyName();
    return CreateElement(document, parent, name, namespaceUri);
}

int WriteValues(const CKaInstance& instance, IXMLDOMDocument2* document, IXMLDOMNode* element,
                const std::wstring& namespaceUri) {
    int status = 0;
    for (unsigned int i = 0; status == 0 && i < instance.GetKaValueCount(); ++i)
        status = instance.GetKaValue(i)->WriteXML(document, element, namespaceUri, 0);
    return status;
}

} // namespace

int CKaInstance::ReadXML(IXMLDOMDocument2*, IXMLDOMNode* node) {
    RequireNotNull(node, L"node", L"CKaInstance::ReadXML");
    return ReadFromXML(node->get_baseName(), node);
}

int CKaInstance::ReadFromXML(const std::wstring& typeName, IXMLDOMNode* node) {
    RequireNotNull(node, L"node", L"CKaInstance::ReadFromXML");
    SetTypeName(typeName);
    for (IXMLDOMNode* child = node->get_firstChild(); child != nullptr; child = child->get_nextSibling()) {
        if (child->get_nodeType() != NODE_ELEMENT)
            continue;
        std::unique_ptr<KaValueBase> value(KaValueBase::CreateKaValueFromXml(m_pKaClass, child));
        AddKaValue(value.get());
        static_cast<void>(value.release());
    }
    return 0;
}

KaValueBase* KaValueBase::CreateKaValueFromXml(CKaClass* kaClass, IXMLDOMNode* node) {
    if (kaClass == nullptr)
        throw KAXMLInvalidArgument(L"NULL pKaClass passed to CreateKaValueFromXml");
    RequireNotNull(node, L"node", L"KaValueBase::CreateKaValueFromXml");
    const std::wstring& name = node->get_baseName();
    if (name.empty() || node->get_firstChild() == nullptr)
        return nullptr;
    CKaProperty* const property = kaClass->FindProperty(name.c_str());
    if (property == nullptr)
        throw KAXMLFormatError(
            Concat(L"KaClass ", kaClass->TypeName(), L" does not contain an KaProperty named ", name));
    if (property->IsArray() != 0)
        return ReadArray(*kaClass, *property, node).release();
    if (property->IsStruct() != 0)
        throw KAXMLFormatError(L"We don't yet support reading arrays or structs from a DOM");
    return ReadPrimitive(kaClass, *property, node).release();
}

int KaStructValue::ReadXML(CKaClass* structClass, IXMLDOMNode* node) {
    if (structClass == nullptr)
        throw KAXMLRuntimeError(L"Could not find class for struct property");
    auto instance = std::make_unique<CKaInstance>(structClass);
    const int status = instance->ReadFromXML(structClass->TypeName(), node);
    SetValue(instance.get());
    static_cast<void>(instance.release());
    return status;
}

int CKaInstance::WriteXML(IXMLDOMDocument2* document, IXMLDOMNode* parent) const {
    RequireNotNull(document, L"document", L"CKaInstance::WriteXML");
    RequireNotNull(parent, L"parent", L"CKaInstance::WriteXML");
    const std::wstring namespaceUri = SchemaOf(*m_pKaClass).XmlNamespace();
    IXMLDOMElement* const element = CreateElement(document, parent, m_typeName, namespaceUri);
    if (!m_instanceID.empty())
        CHECK_HRESULT(element->setAttribute(L"id"sv, m_instanceID), L"pElement->setAttribute (L\"id\", instanceId)");
    return WriteValues(*this, document, element, namespaceUri);
}

int CKaValue::WriteXML(IXMLDOMDocument2* document, IXMLDOMNode* parent, const std::wstring& namespaceUri,
                       int isMember) const {
    AppendText(document, CreateValueElement(*this, document, parent, namespaceUri, isMember), m_value);
    return 0;
}

int KaArrayValue::WriteXML(IXMLDOMDocument2* document, IXMLDOMNode* parent, const std::wstring& namespaceUri,
                           int isMember) const {
    IXMLDOMElement* const element = CreateValueElement(*this, document, parent, namespaceUri, isMember);
    for (const auto& member : m_members)
        if (member)
            member->WriteXML(document, element, namespaceUri, 1);
    return 0;
}

int KaStructValue::WriteXML(IXMLDOMDocument2* document, IXMLDOMNode* parent, const std::wstring& namespaceUri,
                            int isMember) const {
    if (!m_pInstance)
        throw KAXMLLogicError(L"Can't serialize a NULL struct");
    IXMLDOMElement* const element = CreateValueElement(*this, document, parent, namespaceUri, isMember);
    return WriteValues(*m_pInstance, document, element, namespaceUri);
}

} // namespace KAXML

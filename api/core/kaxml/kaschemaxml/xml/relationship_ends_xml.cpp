#include <kaxml/kaschemaxml/instance/custom_attribute.h>
#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaschemaxml/schema/relationship_class.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaschemaxml/xml/elements.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/check_hresult.h>
#include <kaxml/kaxml/core/errors.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/core/make_room.h>

namespace KAXML {

using namespace std::string_view_literals;

namespace {

using Keys = std::vector<std::wstring>;

// Messages about an end: they name the relationship class that contains it.
class EndMessages {
  public:
    EndMessages(const wchar_t* endElement, const CKaRelationshipClass* owner)
        : m_endElement(endElement), m_owner(owner == nullptr ? std::wstring() : owner->TypeName()) {}

    [[noreturn]] void ThrowUnrecognizedAttribute(const std::wstring& name, const wchar_t* pathBelowEnd) const {
        // The message of the deepest element has an "in" that the others lack.
        const bool isKeyProperty = std::wstring_view(pathBelowEnd) == L"\\Class\\Key\\Property"sv;
        throw KAXMLFormatError(Concat(L"Unrecognized attribute '", name, isKeyProperty ? L"' in " : L"' ",
                                      L"KaRelationshipClass\\", m_endElement, pathBelowEnd, L" element of '", m_owner,
                                      L"'."));
    }

    [[noreturn]] void ThrowUnrecognizedElement(const std::wstring& name) const {
        throw KAXMLFormatError(Concat(L"Unrecognized element <", name, L"> in <", m_endElement,
                                      L"> element of KaRelationshipClass '", m_owner, L"'."));
    }

    [[noreturn]] void ThrowEmptyTargetClass() const {
        throw KAXMLFormatError(
            Concat(L"KaRelationshipClass\\Target\\Class element is empty in KaRelationshipClass '", m_owner));
    }

  private:
    const wchar_t* m_endElement;
    std::wstring m_owner;
};

// The attributes that both ends have.
template <typename End> void ReadEndAttributes(End& end, IXMLDOMNode* node, const EndMessages& messages) {
    IXMLDOMNamedNodeMap attributes = node->get_attributes();
    while (const IXMLDOMAttribute* const attribute = attributes.nextNode()) {
        const std::wstring& name = attribute->get_nodeName();
        if (name == L"cardinality"sv)
            end.m_cardinality = attribute->get_text();
        else if (name == L"roleLabel"sv)
            end.m_roleLabel = attribute->get_text();
        else if (name == L"polymorphic"sv)
            end.m_isPolymorphic = IsTrue(attribute->get_text()) ? 1 : 0;
        else
            messages.ThrowUnrecognizedAttribute(name, L"");
    }
}

void ReadKeyProperty(IXMLDOMNode* node, const EndMessages& messages, Keys& keys) {
    IXMLDOMNamedNodeMap attributes = node->get_attributes();
    while (const IXMLDOMAttribute* const attribute = attributes.nextNode()) {
        if (attribute->get_nodeName() != L"name"sv)
            messages.ThrowUnrecognizedAttribute(attribute->get_nodeName(), L"\\Class\\Key\\Property");
        keys.emplace_back(attribute->get_text());
    }
}

// Appends the key properties of a "Class" element.
void ReadKeys(IXMLDOMNode* classNode, const EndMessages& messages, Keys& keys) {
    for (IXMLDOMNode* key = classNode->get_firstChild(); key != nullptr; key = key->get_nextSibling()) {
        if (key->get_baseName() != L"Key"sv)
            continue;
        for (IXMLDOMNode* child = key->get_firstChild(); child != nullptr; child = child->get_nextSibling())
            if (child->get_baseName() == L"Property"sv)
                ReadKeyProperty(child, messages, keys);
    }
}

// Calls `use` with the value of each "class" attribute; returns whether there was any.
template <typename Use> bool ForEachClassName(IXMLDOMNode* classNode, const EndMessages& messages, Use use) {
    bool found = false;
    IXMLDOMNamedNodeMap attributes = classNode->get_attributes();
    while (const IXMLDOMAttribute* const attribute = attributes.nextNode()) {
        if (attribute->get_nodeName() != L"class"sv)
            messages.ThrowUnrecognizedAttribute(attribute->get_nodeName(), L"\\Class");
        use(std::wstring(attribute->get_text()));
        found = true;
    }
    return found;
}

// What both ends have; their "Class" elements differ.
template <typename End, typename ReadClass> void ReadEnd(End& end, const EndMessages& messages, CKaSchema* schema,
                                                         IXMLDOMDocument2* document, IXMLDOMNode* node,
                                                         ReadClass readClass) {
    ReadEndAttributes(end, node, messages);
    for (IXMLDOMNode* child = node->get_firstChild(); child != nullptr; child = child->get_nextSibling()) {
        const std::wstring& name = child->get_baseName();
        if (name == L"Class"sv)
            readClass(child);
        else if (name == L"KaCustomAttributes"sv)
            end.ReadCustomAttributesFromXML(schema, document, child);
        else if (child->get_nodeType() != NODE_COMMENT)
            messages.ThrowUnrecognizedElement(name);
    }
}

std::wstring RelativeClassName(CKaRelationshipClass* relationshipClass, const std::wstring& className) {
    if (relationshipClass->GetKaSchema() == nullptr)
        throw KAXMLLogicError(Concat(L"KaRelationshipClass '", relationshipClass->TypeName(), L"' has no KaSchema"));
    return relationshipClass->GetKaSchema()->GetRelativeClassName(className.c_str());
}

// Writes a "Class" element; `keyText` is how the keys' attribute call is quoted when it fails.
void WriteClass(CKaRelationshipClass* relationshipClass, IXMLDOMDocument2* document, IXMLDOMNode* endElement,
                const std::wstring& className, const Keys& keys, const wchar_t* keyText) {
    const std::wstring fullname = RelativeClassName(relationshipClass, className);
    IXMLDOMElement* const classElement = CreateSchemaElement(document, endElement, L"Class"sv);
    CHECK_HRESULT(classElement->setAttribute(L"class"sv, fullname),
                  L"pClassElement->setAttribute (L\"class\", _variant_t(fullname.c_str()))");
    if (keys.empty())
        return;
    IXMLDOMElement* const keyElement = CreateSchemaElement(document, classElement, L"Key"sv);
    for (const std::wstring& key : keys)
        CHECK_HRESULT(CreateSchemaElement(document, keyElement, L"Property"sv)->setAttribute(L"name"sv, key), keyText);
}

} // namespace

int CKaSource::ReadXML(CKaSchema* schema, IXMLDOMDocument2* document, IXMLDOMNode* node) {
    ReadEnd(*this, EndMessages(L"Source", m_pOwner), schema, document, node,
            [this](IXMLDOMNode* classNode) { ReadXMLClass(classNode); });
    return 0;
}

void CKaSource::ReadXMLClass(IXMLDOMNode* node) {
    const EndMessages messages(L"Source", m_pOwner);
    ForEachClassName(node, messages, [this](const std::wstring& name) { m_className = name; });
    ReadKeys(node, messages, m_keyVector);
}

int CKaSource::WriteXML(CKaRelationshipClass* relationshipClass, IXMLDOMDocument2* document,
                        IXMLDOMNode* parent) const {
    IXMLDOMElement* const element = CreateSchemaElement(document, parent, L"Source"sv);
    CHECK_HRESULT(element->setAttribute(L"cardinality"sv, m_cardinality),
                  L"pSourceElement->setAttribute (L\"cardinality\", _variant_t(m_cardinality.c_str()))");
    CHECK_HRESULT(element->setAttribute(L"roleLabel"sv, m_roleLabel),
                  L"pSourceElement->setAttribute (L\"roleLabel\", _variant_t(m_roleLabel.c_str()))");
    CHECK_HRESULT(
        element->setAttribute(L"polymorphic"sv, TrueOrFalse(m_isPolymorphic)),
        L"pSourceElement->setAttribute (L\"polymorphic\", _variant_t(m_isPolymorphic ? KAXML_TRUE : KAXML_FALSE))");
    const int status = WriteCustomAttributesToXML(document, element);
    if (status != 0)
        return status;
    if (!m_className.empty() && m_className != KAXML_ANY_CLASS)
        WriteClass(relationshipClass, document, element, m_className, m_keyVector,
                   L"pPropertyElement->setAttribute (L\"name\", _variant_t(m_keyVector[i].c_str()))");
    return 0;
}

int CKaTargets::ReadXML(CKaSchema* schema, IXMLDOMDocument2* document, IXMLDOMNode* node) {
    ReadEnd(*this, EndMessages(L"Target", m_pOwner), schema, document, node,
            [this](IXMLDOMNode* classNode) { ReadXMLClass(classNode); });
    return 0;
}

void CKaTargets::ReadXMLClass(IXMLDOMNode* node) {
    const EndMessages messages(L"Target", m_pOwner);
    std::wstring className;
    if (!ForEachClassName(node, messages, [&className](const std::wstring& name) { className = name; }))
        messages.ThrowEmptyTargetClass();
    Keys keys;
    ReadKeys(node, messages, keys);
    // Both lists grow or neither: they run side by side.
    MakeRoomForOne(m_classNames);
    m_keyVectors.push_back(std::move(keys));
    m_classNames.push_back(std::move(className));
}

int CKaTargets::WriteXML(CKaRelationshipClass* relationshipClass, IXMLDOMDocument2* document,
                         IXMLDOMNode* parent) const {
    IXMLDOMElement* const element = CreateSchemaElement(document, parent, L"Target"sv);
    CHECK_HRESULT(element->setAttribute(L"cardinality"sv, m_cardinality),
                  L"pTargetElement->setAttribute (L\"cardinality\", _variant_t(m_cardinality.c_str()))");
    CHECK_HRESULT(element->setAttribute(L"roleLabel"sv, m_roleLabel),
                  L"pTargetElement->setAttribute (L\"roleLabel\", _variant_t(m_roleLabel.c_str()))");
    CHECK_HRESULT(
        element->setAttribute(L"polymorphic"sv, TrueOrFalse(m_isPolymorphic)),
        L"pTargetElement->setAttribute (L\"polymorphic\", _variant_t(m_isPolymorphic ? KAXML_TRUE : KAXML_FALSE))");
    if (m_classNames.size() != m_keyVectors.size())
        throw KAXMLLogicError(Concat(L"Target of KaRelationshipClass '", relationshipClass->TypeName(),
                                     L"' contains mismatched number of Class references and Key Vectors"));
    const int status = WriteCustomAttributesToXML(document, element);
    if (status != 0)
        return status;
    for (std::size_t i = 0; i < m_classNames.size(); ++i)
        if (!m_classNames[i].empty())
            WriteClass(relationshipClass, document, element, m_classNames[i], m_keyVectors[i],
                       L"pPropertyElement->setAttribute (L\"name\", _variant_t(keyVector[i].c_str()))");
    return 0;
}

} // namespace KAXML

#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/relationship_class.h>
#include <kaxml/kaschemaxml/schema/relationship_constraint.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaschemaxml/xml/elements.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/check_hresult.h>
#include <kaxml/kaxml/core/format.h>

namespace KAXML {

using namespace std::string_view_literals;

namespace {

[[noreturn]] void ThrowIncompletePair(const CKaRelationshipClass& relationshipClass) {
    throw KAXMLFormatError(Concat(L"KaRelationshipConstraints of KaRelationshipClass '", relationshipClass.TypeName(),
                                  L"' contains something other than a pair of KaSourceConstraint and "
                                  L"KaTargetConstraint."));
}

} // namespace

int CKaRelationshipClass::ReadXMLContents(CKaSchema* schema, IXMLDOMDocument2* document, IXMLDOMNode* node) {
    RequireNotNull(schema, L"schema", L"CKaRelationshipClass::ReadXMLContents");
    const int status = CKaClass::ReadXMLContents(schema, document, node);
    if (status != 0)
        return status;
    IXMLDOMNamedNodeMap attributes = node->get_attributes();
    while (const IXMLDOMAttribute* const attribute = attributes.nextNode()) {
        if (attribute->get_nodeName() == L"strength"sv)
            SetStrength(attribute->get_text().data());
        else if (attribute->get_nodeName() == L"strengthDirection"sv)
            SetStrengthDirection(attribute->get_text().data());
    }
    for (IXMLDOMNode* child = node->get_firstChild(); child != nullptr; child = child->get_nextSibling()) {
        const std::wstring& name = child->get_baseName();
        if (name == L"KaRelationshipConstraints"sv)
            ReadLegacyPairs(schema, document, child);
        else if (name == L"Source"sv)
            m_source.ReadXML(schema, document, child);
        else if (name == L"Target"sv)
            m_targets.ReadXML(schema, document, child);
    }
    return 0;
}

void CKaRelationshipClass::ReadLegacyPairs(CKaSchema* schema, IXMLDOMDocument2* document, IXMLDOMNode* node) {
    for (IXMLDOMNode* child = node->get_firstChild(); child != nullptr; child = child->get_nextSibling())
        if (child->get_nodeType() != NODE_COMMENT)
            ReadLegacyPair(schema, document, child);
}

void CKaRelationshipClass::ReadLegacyPair(CKaSchema* schema, IXMLDOMDocument2* document, IXMLDOMNode* node) {
    CKaRelationshipConstraint pair;
    int status = pair.ReadXML(document, node);
    if (pair.GetSourceConstraint() == nullptr || pair.GetTargetConstraint() == nullptr)
        ThrowIncompletePair(*this);
    UpgradeLegacySource(schema, pair.GetSourceConstraint());
    UpgradeLegacyTarget(schema, pair.GetTargetConstraint());
    if (const KaRelationshipUpgradeHandler handler = schema->GetKaRelationshipUpgradeHandler()) {
        KaArrayValue* unused = nullptr;
        status = handler(schema, this, &pair, &unused);
    }
    if (status != 0)
        throw KAXMLLogicError(L"Problem while attempting to upgrade legacy KaRelationshipConstraint element");
}

int CKaRelationshipConstraint::ReadXML(IXMLDOMDocument2* document, IXMLDOMNode* node) {
    RequireNotNull(node, L"node", L"CKaRelationshipConstraint::ReadXML");
    int status = 0;
    for (IXMLDOMNode* child = node->get_firstChild(); child != nullptr && status == 0;
         child = child->get_nextSibling()) {
        const bool isSource = child->get_baseName() == L"KaSourceConstraint"sv;
        if (!isSource && child->get_baseName() != L"KaTargetConstraint"sv)
            continue;
        auto constraint = std::make_unique<CKaConstraint>();
        status = constraint->ReadXML(document, child);
        (isSource ? m_pSourceConstraint : m_pTargetConstraint) = std::move(constraint);
    }
    return status;
}

int CKaConstraint::ReadXML(IXMLDOMDocument2*, IXMLDOMNode* node) {
    RequireNotNull(node, L"node", L"CKaConstraint::ReadXML");
    IXMLDOMNamedNodeMap attributes = node->get_attributes();
    while (const IXMLDOMAttribute* const attribute = attributes.nextNode()) {
        if (attribute->get_nodeName() == L"className"sv)
            m_className = attribute->get_text();
        else if (attribute->get_nodeName() == L"roleLabel"sv)
            m_roleLabel = attribute->get_text();
    }
    for (IXMLDOMNode* child = node->get_firstChild(); child != nullptr; child = child->get_nextSibling()) {
        if (child->get_baseName() != L"KaRelationshipKey"sv)
            continue;
        std::wstring key;
        IXMLDOMNamedNodeMap keyAttributes = child->get_attributes();
        while (const IXMLDOMAttribute* const attribute = keyAttributes.nextNode())
            if (attribute->get_nodeName() == L"propertyName"sv)
                key = attribute->get_text();
        m_keyVector.push_back(std::move(key));
    }
    return 0;
}

int CKaRelationshipClass::WriteXML(IXMLDOMDocument2* document, IXMLDOMNode* parent) {
    RequireNotNull(document, L"document", L"CKaRelationshipClass::WriteXML");
    RequireNotNull(parent, L"parent", L"CKaRelationshipClass::WriteXML");
    IXMLDOMElement* const element = CreateSchemaElement(document, parent, L"KaRelationshipClass"sv);
    CHECK_HRESULT(element->setAttribute(L"typeName"sv, TypeName()),
                  L"pElement->setAttribute (L\"typeName\", _variant_t(GetTypeName()))");
    if (*GetDescription() != L'\0')
        CHECK_HRESULT(element->setAttribute(L"description"sv, GetDescription()),
                      L"pElement->setAttribute (L\"description\", _variant_t(GetDescription()))");
    if (*GetDisplayLabel() != L'\0')
        CHECK_HRESULT(element->setAttribute(L"displayLabel"sv, GetDisplayLabel()),
                      L"pElement->setAttribute (L\"displayLabel\", _variant_t(GetDisplayLabel()))");
    if (*GetBaseClass() != L'\0')
        CHECK_HRESULT(element->setAttribute(L"baseClass"sv, GetBaseClass()),
                      L"pElement->setAttribute (L\"baseClass\", _variant_t(GetBaseClass()))");
    if (IsCustomAttributeClass() != 0)
        CHECK_HRESULT(element->setAttribute(L"isCustomAttributeClass"sv, KAXML_TRUE),
                      L"pElement->setAttribute (L\"isCustomAttributeClass\", _variant_t(KAXML_TRUE))");
    CHECK_HRESULT(
        element->setAttribute(L"isDomainClass"sv, TrueOrFalse(IsDomainClass())),
        L"pElement->setAttribute (L\"isDomainClass\", _variant_t(IsDomainClass() ? KAXML_TRUE : KAXML_FALSE))");
    if (!m_strength.empty())
        CHECK_HRESULT(element->setAttribute(L"strength"sv, m_strength),
                      L"pElement->setAttribute (L\"strength\", _variant_t(GetStrength()))");
    if (!m_strengthDirection.empty())
        CHECK_HRESULT(element->setAttribute(L"strengthDirection"sv, m_strengthDirection),
                      L"pElement->setAttribute (L\"strengthDirection\", _variant_t(GetStrengthDirection()))");
    int status = WriteCustomAttributesToXML(document, element);
    for (unsigned int i = 0; status == 0 && i < GetKaPropertyCount(); ++i)
        status = GetKaProperty(i)->WriteXML(document, element);
    if (status == 0)
        status = m_source.WriteXML(this, document, element);
    if (status == 0)
        status = m_targets.WriteXML(this, document, element);
    return status;
}

} // namespace KAXML

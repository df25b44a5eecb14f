#include <kaxml/kaschemaxml/schema/model_copier.h>

#include <kaxml/kaschemaxml/instance/custom_attribute.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/relationship_class.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaxml/core/errors.h>

namespace KAXML {

void ModelCopier::Register(const void* original, void* copy) { m_copies.emplace(original, copy); }

void ModelCopier::RegisterClass(const CKaClass& original, CKaClass& copy) {
    Register(&original, &copy);
    for (std::size_t i = 0; i < original.m_properties.size(); ++i)
        Register(original.m_properties[i].get(), copy.m_properties[i].get());
}

void ModelCopier::RegisterSchema(const CKaSchema& original, CKaSchema& copy) {
    Register(&original, &copy);
    for (std::size_t i = 0; i < original.m_classes.size(); ++i)
        RegisterClass(*original.m_classes[i], *copy.m_classes[i]);
    for (std::size_t i = 0; i < original.m_relationshipClasses.size(); ++i)
        RegisterClass(*original.m_relationshipClasses[i], *copy.m_relationshipClasses[i]);
    for (std::size_t i = 0; i < original.m_references.size(); ++i)
        if (const CKaSchema* const referenced = original.m_references[i].m_pKaSchema)
            RegisterSchema(*referenced, *copy.m_references[i].m_pKaSchema);
}

template <typename T> void ModelCopier::Turn(T*& pointer) const noexcept {
    const auto found = m_copies.find(pointer);
    if (found != m_copies.end())
        pointer = static_cast<T*>(found->second);
}

void ModelCopier::RelinkValue(KaValueBase& value) const noexcept {
    Turn(value.m_pProperty);
    if (auto* const array = dynamic_cast<KaArrayValue*>(&value)) {
        for (const auto& member : array->m_members)
            if (member)
                RelinkValue(*member);
    } else if (auto* const structValue = dynamic_cast<KaStructValue*>(&value)) {
        if (structValue->m_pInstance)
            RelinkInstance(*structValue->m_pInstance);
    }
}

void ModelCopier::RelinkInstance(CKaInstance& instance) const noexcept {
    Turn(instance.m_pKaClass);
    for (const auto& value : instance.m_values)
        RelinkValue(*value);
}

void ModelCopier::RelinkCommon(CKaCommon& item) const noexcept {
    for (const auto& customAttribute : item.m_customAttributes)
        RelinkInstance(*customAttribute);
}

void ModelCopier::RelinkEnds(CKaRelationshipClass& relationshipClass) const noexcept {
    RelinkCommon(relationshipClass.m_source);
    RelinkCommon(relationshipClass.m_targets);
}

void ModelCopier::RelinkClass(CKaClass& kaClass) const noexcept {
    RelinkCommon(kaClass);
    Turn(kaClass.m_pKaSchema);
    Turn(kaClass.m_pBaseClass);
    for (const auto& property : kaClass.m_properties) {
        RelinkCommon(*property);
        Turn(property->m_pKaClass);
    }
    if (auto* const relationshipClass = dynamic_cast<CKaRelationshipClass*>(&kaClass))
        RelinkEnds(*relationshipClass);
}

void ModelCopier::RelinkSchema(CKaSchema& schema) const noexcept {
    RelinkCommon(schema);
    for (const auto& kaClass : schema.m_classes)
        RelinkClass(*kaClass);
    for (const auto& relationshipClass : schema.m_relationshipClasses)
        RelinkClass(*relationshipClass);
    for (const CKaSchemaReference& reference : schema.m_references)
        if (reference.m_pKaSchema != nullptr)
            RelinkSchema(*reference.m_pKaSchema);
}

std::unique_ptr<CKaClass> ModelCopier::Clone(const CKaClass& kaClass) {
    if (const auto* const relationshipClass = dynamic_cast<const CKaRelationshipClass*>(&kaClass))
        return std::make_unique<CKaRelationshipClass>(*relationshipClass);
    return std::make_unique<CKaClass>(kaClass);
}

std::unique_ptr<KaValueBase> ModelCopier::Clone(const KaValueBase& value) {
    if (const auto* const primitive = dynamic_cast<const CKaValue*>(&value))
        return std::make_unique<CKaValue>(*primitive);
    if (const auto* const array = dynamic_cast<const KaArrayValue*>(&value))
        return std::make_unique<KaArrayValue>(*array);
    if (const auto* const structValue = dynamic_cast<const KaStructValue*>(&value))
        return std::make_unique<KaStructValue>(*structValue);
    throw KAXMLLogicError(L"Cannot copy a value that is neither a CKaValue, a KaArrayValue nor a KaStructValue");
}

void ModelCopier::Swap(CKaCommon& a, CKaCommon& b) noexcept {
    a.m_description.swap(b.m_description);
    a.m_customAttributes.swap(b.m_customAttributes);
    a.m_extendedInfoTexts.swap(b.m_extendedInfoTexts);
    a.m_extendedInfoNumbers.swap(b.m_extendedInfoNumbers);
}

void ModelCopier::Swap(CKaProperty& a, CKaProperty& b) noexcept {
    Swap(static_cast<CKaCommon&>(a), static_cast<CKaCommon&>(b));
    a.m_propertyName.swap(b.m_propertyName);
    a.m_typeName.swap(b.m_typeName);
    a.m_minOccurs.swap(b.m_minOccurs);
    a.m_maxOccurs.swap(b.m_maxOccurs);
    a.m_displayLabel.swap(b.m_displayLabel);
    std::swap(a.m_isStruct, b.m_isStruct);
    std::swap(a.m_isArray, b.m_isArray);
    std::swap(a.m_readOnly, b.m_readOnly);
    std::swap(a.m_pKaClass, b.m_pKaClass);
    std::swap(a.m_attrId, b.m_attrId);
    a.m_classDefaultValue.swap(b.m_classDefaultValue);
    std::swap(a.m_classDefaultValueNotSet, b.m_classDefaultValueNotSet);
}

void ModelCopier::Swap(CKaClass& a, CKaClass& b) noexcept {
    Swap(static_cast<CKaCommon&>(a), static_cast<CKaCommon&>(b));
    a.m_typeName.swap(b.m_typeName);
    a.m_baseClassName.swap(b.m_baseClassName);
    a.m_displayLabel.swap(b.m_displayLabel);
    std::swap(a.m_pBaseClass, b.m_pBaseClass);
    std::swap(a.m_isStruct, b.m_isStruct);
    std::swap(a.m_isCustomAttributeClass, b.m_isCustomAttributeClass);
    std::swap(a.m_isDomainClass, b.m_isDomainClass);
    a.m_properties.swap(b.m_properties);
    std::swap(a.m_pIDGenerationStrategy, b.m_pIDGenerationStrategy);
    std::swap(a.m_pKaSchema, b.m_pKaSchema);
}

void ModelCopier::Swap(CKaSchema& a, CKaSchema& b) noexcept {
    Swap(static_cast<CKaCommon&>(a), static_cast<CKaCommon&>(b));
    a.m_schemaName.swap(b.m_schemaName);
    a.m_schemaPrefix.swap(b.m_schemaPrefix);
    a.m_displayLabel.swap(b.m_displayLabel);
    std::swap(a.m_versionMajor, b.m_versionMajor);
    std::swap(a.m_versionMinor, b.m_versionMinor);
    a.m_searchPath.swap(b.m_searchPath);
    std::swap(a.m_relationshipUpgradeHandler, b.m_relationshipUpgradeHandler);
    std::swap(a.m_classResolutionHelper, b.m_classResolutionHelper);
    a.m_references.swap(b.m_references);
    a.m_classes.swap(b.m_classes);
    a.m_relationshipClasses.swap(b.m_relationshipClasses);
}

void ModelCopier::Swap(CKaInstance& a, CKaInstance& b) noexcept {
    a.m_instanceID.swap(b.m_instanceID);
    a.m_typeName.swap(b.m_typeName);
    std::swap(a.m_pKaClass, b.m_pKaClass);
    a.m_values.swap(b.m_values);
}

} // namespace KAXML

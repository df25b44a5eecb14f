#include <kaxml/kaschemaxml/schema/class_resolution.h>
#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/relationship_class.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/format.h>

#include <optional>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace KAXML {

namespace {

// The names of the schemas on the way from one schema to another along references, joined by
// arrows; none when there is no way.
std::optional<std::wstring> WayAlongReferences(CKaSchema& from, const CKaSchema& to) {
    struct Step {
        explicit Step(CKaSchema& at) : schema(&at), references(&at), entry(references.Begin()) {}
        CKaSchema* schema;
        CKaReferencedSchemaIterator references;
        const CKaSchemaReference* entry;
    };
    std::vector<Step> way{Step(from)};
    std::unordered_set<const CKaSchema*> seen{nullptr, &from};
    while (!way.empty() && way.back().schema != &to) {
        Step& last = way.back();
        if (last.entry == nullptr) {
            way.pop_back();
            continue;
        }
        CKaSchema* const next = last.entry->GetSchema();
        last.entry = last.references.Next();
        if (seen.insert(next).second)
            way.emplace_back(*next);
    }
    if (way.empty())
        return std::nullopt;
    std::wstring names = from.GetSchemaName();
    for (std::size_t i = 1; i < way.size(); ++i)
        names += Concat(L" -> ", way[i].schema->GetSchemaName());
    return names;
}

// A referenced schema of the same major version and a higher minor one serves for a lower one.
// Texts are compared: versions read from files have two digits in each part.
bool VersionServes(std::wstring_view wanted, std::wstring_view offered) {
    if (wanted == offered)
        return true;
    const std::size_t stop = wanted.find(L'.');
    if (stop == std::wstring_view::npos)
        throw KAXMLLogicError(Concat(L"Invalid version string passed to FindReferencedSchema:", wanted));
    return wanted.substr(0, stop) == offered.substr(0, stop) && wanted < offered;
}

const CKaSchema& RequireFound(const CKaSchema* found, const wchar_t* what, const wchar_t* name,
                              const CKaSchema& searched) {
    if (found == nullptr)
        throw KAXMLDomainError(
            Concat(what, name, L"' not found among '", searched.GetSchemaName(), L"'s referenced schemas"));
    return *found;
}

const CKaSchema& SchemaOfPrefix(const CKaSchema& schema, const wchar_t* prefix, const wchar_t* operation) {
    if (prefix == nullptr)
        throw KAXMLLogicError(std::wstring(operation) + L": prefix cannot be NULL!");
    return RequireFound(schema.FindReferencedSchemaByPrefix(prefix), L"KaSchema with prefix '", prefix, schema);
}

const CKaSchema& SchemaOfName(const CKaSchema& schema, const wchar_t* schemaName, const wchar_t* operation) {
    if (schemaName == nullptr)
        throw KAXMLLogicError(std::wstring(operation) + L": schemaName cannot be NULL!");
    return RequireFound(schema.FindReferencedSchema(schemaName, nullptr), L"KaSchema '", schemaName, schema);
}

} // namespace

void CKaSchema::AddReference(CKaSchemaReference& reference) {
    if (reference.m_pKaSchema != nullptr)
        if (const std::optional<std::wstring> way = WayAlongReferences(*reference.m_pKaSchema, *this))
            throw KAXMLRuntimeError(Concat(L"KaSchema references form a cycle: ", m_schemaName, L" -> ", *way));
    m_references.push_back(reference);
}

CKaSchema* CKaSchema::GetReferencedSchema(unsigned long index) const noexcept {
    return index < m_references.size() ? m_references[index].m_pKaSchema : nullptr;
}

CKaSchema* CKaSchema::FindReferencedSchema(const wchar_t* name, const wchar_t* version) const {
    const std::wstring_view wanted(RequireNotNull(name, L"name", L"CKaSchema::FindReferencedSchema"));
    if (wanted == m_schemaName)
        return const_cast<CKaSchema*>(this);
    for (const CKaSchemaReference& reference : m_references)
        if (reference.m_schemaName == wanted &&
            (version == nullptr || VersionServes(version, reference.m_versionString)))
            return reference.m_pKaSchema;
    return nullptr;
}

CKaSchema* CKaSchema::FindReferencedSchemaByPrefix(const wchar_t* prefix) const {
    const std::wstring_view wanted(RequireNotNull(prefix, L"prefix", L"CKaSchema::FindReferencedSchemaByPrefix"));
    if (wanted == m_schemaPrefix)
        return const_cast<CKaSchema*>(this);
    for (const CKaSchemaReference& reference : m_references)
        if (reference.m_schemaPrefix == wanted)
            return reference.m_pKaSchema;
    return nullptr;
}

CKaClass* CKaSchema::FindKaClassUsingPrefix(const wchar_t* className, const wchar_t* prefix,
                                            unsigned long classTypeMask) const {
    return SchemaOfPrefix(*this, prefix, L"FindKaClassUsingPrefix").FindKaClass(className, classTypeMask);
}

CKaClass* CKaSchema::FindKaClassUsingSchemaName(const wchar_t* className, const wchar_t* schemaName,
                                                unsigned long classTypeMask) const {
    return SchemaOfName(*this, schemaName, L"FindKaClassUsingSchemaName").FindKaClass(className, classTypeMask);
}

CKaClass* CKaSchema::FindKaClassUsingFullName(const wchar_t* fullName, unsigned long classTypeMask) const {
    std::wstring prefix;
    std::wstring className;
    ParseKaClassName(fullName, prefix, className);
    return prefix.empty() ? FindKaClass(className.c_str(), classTypeMask)
                          : FindKaClassUsingPrefix(className.c_str(), prefix.c_str(), classTypeMask);
}

CKaRelationshipClass* CKaSchema::FindKaRelationshipClassUsingPrefix(const wchar_t* className, const wchar_t* prefix,
                                                                    unsigned long classTypeMask) const {
    return SchemaOfPrefix(*this, prefix, L"FindKaRelationshipClassUsingPrefix")
        .FindKaRelationshipClass(className, classTypeMask);
}

CKaRelationshipClass* CKaSchema::FindKaRelationshipClassUsingSchemaName(const wchar_t* className,
                                                                        const wchar_t* schemaName,
                                                                        unsigned long classTypeMask) const {
    return SchemaOfName(*this, schemaName, L"FindKaRelationshipClassUsingSchemaName")
        .FindKaRelationshipClass(className, classTypeMask);
}

CKaRelationshipClass* CKaSchema::FindKaRelationshipClassUsingFullName(const wchar_t* fullName,
                                                                      unsigned long classTypeMask) const {
    std::wstring prefix;
    std::wstring className;
    ParseKaClassName(fullName, prefix, className);
    return prefix.empty() ? FindKaRelationshipClass(className.c_str(), classTypeMask)
                          : FindKaRelationshipClassUsingPrefix(className.c_str(), prefix.c_str(), classTypeMask);
}

std::wstring CKaSchema::GetRelativeClassName(CKaClass* kaClass) const {
    if (kaClass == nullptr)
        throw KAXMLLogicError(L"Cannot pass NULL pKaClass to CKaSchema::GetRelativeClassName.");
    const CKaSchema* const schema = kaClass->GetKaSchema();
    const bool isOwn = schema != nullptr && schema->m_schemaName == m_schemaName;
    return isOwn ? kaClass->TypeName() : kaClass->FullName();
}

std::wstring CKaSchema::GetRelativeClassName(const wchar_t* fullName) const {
    CKaClass* const found = FindKaClassUsingFullName(fullName, KA_ANY_CLASS_TYPE);
    if (found == nullptr)
        throw KAXMLFormatError(Concat(L"Cannot find KaClass '", fullName, L"' in KaSchema '", m_schemaName,
                                      L"' or its referenced Schemas."));
    return GetRelativeClassName(found);
}

void CKaSchema::SetKaClassResolutionHelper(KaClassResolutionHelper helper) noexcept {
    m_classResolutionHelper = helper;
}

KaClassResolutionHelper CKaSchema::GetKaClassResolutionHelper() const noexcept { return m_classResolutionHelper; }

void CKaSchema::SetKaRelationshipUpgradeHandler(KaRelationshipUpgradeHandler handler) noexcept {
    m_relationshipUpgradeHandler = handler;
}

KaRelationshipUpgradeHandler CKaSchema::GetKaRelationshipUpgradeHandler() const noexcept {
    return m_relationshipUpgradeHandler;
}

CKaReferencedSchemaIterator::CKaReferencedSchemaIterator(CKaSchema* schema) : m_pKaSchema(schema) {
    if (schema == nullptr)
        throw KAXMLRuntimeError(L"Called CKaReferencedSchemaIterator::CKaReferencedSchemaIterator with NULL pKaSchema");
}

CKaSchemaReference* CKaReferencedSchemaIterator::Begin() noexcept {
    std::vector<CKaSchemaReference>& references = m_pKaSchema->m_references;
    m_pCurrent = references.empty() ? nullptr : references.data();
    return m_pCurrent;
}

CKaSchemaReference* CKaReferencedSchemaIterator::Next() noexcept {
    std::vector<CKaSchemaReference>& references = m_pKaSchema->m_references;
    if (m_pCurrent != nullptr && ++m_pCurrent == references.data() + references.size())
        m_pCurrent = nullptr;
    return m_pCurrent;
}

CKaClass* ResolveKaClass(CKaSchema* schema, CKaRelationshipClass* relationshipClass, const wchar_t* className) {
    if (CKaClass* const found = schema->FindKaClass(className, KA_ANY_CLASS_TYPE))
        return found;
    if (const KaClassResolutionHelper helper = schema->GetKaClassResolutionHelper())
        if (CKaClass* const supplied = helper(schema, className))
            return supplied;
    throw KAXMLFormatError(Concat(L"KaRelationshipClass '", relationshipClass->TypeName(), L"' refers to KaClass '",
                                  className, L"', which does not exist in the KaSchema '", schema->GetSchemaName(),
                                  L"' or its referenced KaSchemas."));
}

} // namespace KAXML

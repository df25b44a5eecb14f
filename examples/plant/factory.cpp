#include "factory.h"

namespace plant {
namespace {

// Structs and custom attributes never stand on their own, so only domain classes are asked for.
// Referenced schemas are searched too.
KAXML::CKaInstance* CreateFrom(const KAXML::CKaSchema& schema, const wchar_t* className, int* isRelationship) {
    if (auto* relationshipClass = schema.FindKaRelationshipClass(className, KAXML::KA_DOMAIN_CLASS)) {
        *isRelationship = 1;
        return new KAXML::KaRelationshipInstance(relationshipClass);
    }
    auto* kaClass = schema.FindKaClass(className, KAXML::KA_DOMAIN_CLASS);
    return kaClass ? new KAXML::CKaInstance(kaClass) : nullptr;
}

} // namespace

Factory::Factory(const std::vector<KAXML::CKaSchema*>& schemas) : m_schemas(schemas) {
    for (KAXML::CKaSchema* schema : schemas)
        AddNamespaces(schema);
}

KAXML::CKaInstance* Factory::CreateKaInstance(const wchar_t* namespaceUri, const wchar_t* className,
                                              int* isRelationship) {
    for (const auto& [uri, schema] : m_namespaces)
        if (uri == namespaceUri)
            return CreateFrom(*schema, className, isRelationship);
    for (const KAXML::CKaSchema* schema : m_schemas)
        if (KAXML::CKaInstance* instance = CreateFrom(*schema, className, isRelationship))
            return instance;
    return nullptr;
}

void Factory::AddNamespaces(KAXML::CKaSchema* schema) {
    m_namespaces.emplace_back(schema->XmlNamespace(), schema);
    KAXML::CKaReferencedSchemaIterator references(schema);
    for (auto* reference = references.Begin(); reference; reference = references.Next())
        if (reference->GetSchema())
            AddNamespaces(reference->GetSchema());
}

} // namespace plant

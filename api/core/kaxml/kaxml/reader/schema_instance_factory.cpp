#include <kaxml/kaxml/reader/schema_instance_factory.h>

#include <kaxml/kaschemaxml/instance/instance.h>
#include <kaxml/kaschemaxml/schema/relationship_class.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/map_by_name.h>
#include <kaxml/kaxml/core/text.h>

#include <string_view>
#include <unordered_set>
#include <vector>

namespace KAXML {

namespace {

// The schema and those it references, depth first, each once.
std::vector<CKaSchema*> WithReferences(CKaSchema* schema) {
    std::vector<CKaSchema*> found;
    std::unordered_set<CKaSchema*> seen;
    std::vector<CKaSchema*> waiting{schema};
    while (!waiting.empty()) {
        CKaSchema* const next = waiting.back();
        waiting.pop_back();
        if (!seen.insert(next).second)
            continue;
        found.push_back(next);
        std::vector<CKaSchema*> references;
        CKaReferencedSchemaIterator iterator(next);
        for (auto* reference = iterator.Begin(); reference != nullptr; reference = iterator.Next())
            if (reference->GetSchema() != nullptr)
                references.push_back(reference->GetSchema());
        waiting.insert(waiting.end(), references.rbegin(), references.rend());
    }
    return found;
}

} // namespace

class CKaSchemaInstanceFactory::Index {
  public:
    // One of the two classes is null.
    struct Entry {
        std::size_t schema;
        CKaClass* kaClass;
        CKaRelationshipClass* relationshipClass;
    };

    Index(CKaSchema* root, unsigned long mask) {
        const std::vector<CKaSchema*> schemas = WithReferences(root);
        for (CKaSchema* const schema : schemas)
            m_namespaces.push_back(schema->XmlNamespace());
        for (std::size_t i = 0; i < schemas.size(); ++i)
            for (unsigned int j = 0; j < schemas[i]->GetKaRelationshipClassCount(); ++j)
                if (auto* const found = schemas[i]->GetKaRelationshipClass(j); found->MatchesClassType(mask))
                    m_entries[found->TypeName()].push_back({i, nullptr, found});
        for (std::size_t i = 0; i < schemas.size(); ++i)
            for (unsigned int j = 0; j < schemas[i]->GetKaClassCount(); ++j)
                if (auto* const found = schemas[i]->GetKaClassByIndex(j); found->MatchesClassType(mask))
                    m_entries[found->TypeName()].push_back({i, found, nullptr});
    }

    const Entry* Find(std::wstring_view namespaceUri, const wchar_t* elementName) const {
        if (const Entry* const found = FindByName(namespaceUri, elementName))
            return found;
        std::wstring name(elementName);
        return DecodeFromValidXmlTag(name) != 0 ? FindByName(namespaceUri, name) : nullptr;
    }

  private:
    const Entry* FindByName(std::wstring_view namespaceUri, std::wstring_view name) const {
        const auto entries = m_entries.find(name);
        if (entries == m_entries.end())
            return nullptr;
        for (const Entry& entry : entries->second)
            if (m_namespaces[entry.schema] == namespaceUri)
                return &entry;
        return &entries->second.front();
    }

    std::vector<std::wstring> m_namespaces;
    MapByName<std::vector<Entry>> m_entries;
};

CKaSchemaInstanceFactory::CKaSchemaInstanceFactory(CKaSchema* schema, unsigned long classTypeMask)
    : m_index(std::make_unique<Index>(RequireNotNull(schema, L"schema", L"CKaSchemaInstanceFactory"), classTypeMask)) {}

CKaSchemaInstanceFactory::~CKaSchemaInstanceFactory() = default;

CKaInstance* CKaSchemaInstanceFactory::CreateKaInstance(const wchar_t* namespaceUri, const wchar_t* className,
                                                        int* isRelationship) {
    constexpr wchar_t operation[] = L"CKaSchemaInstanceFactory::CreateKaInstance";
    RequireNotNull(namespaceUri, L"namespaceUri", operation);
    RequireNotNull(className, L"className", operation);
    RequireNotNull(isRelationship, L"isRelationship", operation);
    const Index::Entry* const entry = m_index->Find(namespaceUri, className);
    if (entry == nullptr)
        return nullptr;
    if (entry->relationshipClass == nullptr)
        return CreateInstance(entry->kaClass);
    KaRelationshipInstance* const relationship = CreateRelationshipInstance(entry->relationshipClass);
    *isRelationship = relationship != nullptr ? 1 : *isRelationship;
    return relationship;
}

CKaInstance* CKaSchemaInstanceFactory::CreateInstance(CKaClass* kaClass) { return new CKaInstance(kaClass); }

KaRelationshipInstance* CKaSchemaInstanceFactory::CreateRelationshipInstance(CKaRelationshipClass* relationshipClass) {
    return new KaRelationshipInstance(relationshipClass);
}

} // namespace KAXML

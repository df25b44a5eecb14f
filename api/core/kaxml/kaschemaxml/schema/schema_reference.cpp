#include <kaxml/kaschemaxml/schema/schema_reference.h>

#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaxml/core/errors.h>

namespace KAXML {

namespace {

CKaSchema& RequireSchema(CKaSchema* schema) {
    if (schema == nullptr)
        throw KAXMLInvalidArgument(L"CKaSchemaReference constructor requires a non-NULL KaSchema");
    return *schema;
}

} // namespace

CKaSchemaReference::CKaSchemaReference() = default;

CKaSchemaReference::CKaSchemaReference(CKaSchema* schema)
    : m_schemaName(RequireSchema(schema).GetSchemaName()), m_schemaPrefix(schema->GetSchemaPrefix()),
      m_versionString(schema->VersionString()), m_pKaSchema(schema) {}

CKaSchemaReference::CKaSchemaReference(const CKaSchemaReference& other) = default;
// The pointer refers, it does not own: the source of a move keeps its own.
CKaSchemaReference::CKaSchemaReference(CKaSchemaReference&& other) noexcept = default;

CKaSchemaReference& CKaSchemaReference::operator=(const CKaSchemaReference& other) {
    if (this != &other)
        *this = CKaSchemaReference(other);
    return *this;
}

CKaSchemaReference& CKaSchemaReference::operator=(CKaSchemaReference&& other) noexcept = default;
CKaSchemaReference::~CKaSchemaReference() = default;

CKaSchema* CKaSchemaReference::GetSchema() const noexcept { return m_pKaSchema; }

} // namespace KAXML

#include <kaxml/kaschemaxml/schema/schema.h>

#include <kaxml/kaschemaxml/schema/model_copier.h>
#include <kaxml/kaschemaxml/schema/names.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/relationship_class.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/format.h>

#include <utility>

namespace KAXML {

namespace {

// Construction from null-terminated texts: null names are for the name rule to refuse.
const wchar_t* RequireName(const wchar_t* name, std::wstring_view kind) {
    NameIsValid(name, 1, kind);
    return name;
}

} // namespace

CKaSchema::CKaSchema(const std::wstring& name, const std::wstring& prefix, const std::wstring& description)
    : CKaCommon(description) {
    init(name, prefix);
}

CKaSchema::CKaSchema(const wchar_t* name, const wchar_t* prefix, const wchar_t* description) : CKaCommon(description) {
    // The name is judged before the prefix.
    const std::wstring checkedName = RequireName(name, kSchemaNameKind);
    init(checkedName, RequireName(prefix, kClassNameKind));
}

void CKaSchema::init(const std::wstring& name, const std::wstring& prefix) {
    NameIsValid(name.c_str(), 1, kSchemaNameKind);
    NameIsValid(prefix.c_str(), 1, kClassNameKind);
    m_schemaName = name;
    m_schemaPrefix = prefix;
}

CKaSchema::CKaSchema(const CKaSchema& other)
    : CKaCommon(other), m_schemaName(other.m_schemaName), m_schemaPrefix(other.m_schemaPrefix),
      m_displayLabel(other.m_displayLabel), m_versionMajor(other.m_versionMajor), m_versionMinor(other.m_versionMinor),
      m_searchPath(other.m_searchPath), m_relationshipUpgradeHandler(other.m_relationshipUpgradeHandler),
      m_classResolutionHelper(other.m_classResolutionHelper), m_references(other.m_references) {
    m_classes.reserve(other.m_classes.size());
    for (const auto& kaClass : other.m_classes)
        m_classes.push_back(ModelCopier::Clone(*kaClass));
    m_relationshipClasses.reserve(other.m_relationshipClasses.size());
    for (const auto& relationshipClass : other.m_relationshipClasses)
        m_relationshipClasses.push_back(std::make_unique<CKaRelationshipClass>(*relationshipClass));
    // Until everything is built the copies of the referenced schemas belong to this list.
    std::vector<std::unique_ptr<CKaSchema>> schemas;
    schemas.reserve(m_references.size());
    for (std::size_t i = 0; i < m_references.size(); ++i) {
        const CKaSchema* const original = other.m_references[i].m_pKaSchema;
        for (std::size_t earlier = 0; earlier < i; ++earlier)
            if (original != nullptr && other.m_references[earlier].m_pKaSchema == original)
                m_references[i].m_pKaSchema = m_references[earlier].m_pKaSchema;
        if (original == nullptr || m_references[i].m_pKaSchema != original)
            continue;
        schemas.push_back(std::make_unique<CKaSchema>(*original));
        m_references[i].m_pKaSchema = schemas.back().get();
    }
    ModelCopier copier;
    copier.RegisterSchema(other, *this);
    copier.RelinkSchema(*this);
    for (auto& schema : schemas)
        static_cast<void>(schema.release());
}

CKaSchema& CKaSchema::operator=(const CKaSchema& other) {
    if (this != &other) {
        CKaSchema copy(other);
        ModelCopier copier;
        copier.Register(&copy, this);
        ModelCopier::Swap(*this, copy);
        copier.RelinkSchema(*this);
    }
    return *this;
}

CKaSchema::~CKaSchema() {
    m_classes.clear();
    m_relationshipClasses.clear();
    DeleteReferencedSchemas();
}

// A schema that is referenced more than once below this one, in one list or on several levels, is
// destroyed once: all are collected first and let go of each other. The list leads through the
// schemas themselves, for destroying must not need memory.
void CKaSchema::DeleteReferencedSchemas() noexcept {
    CKaSchema* last = this;
    for (CKaSchema* schema = this; schema != nullptr; schema = schema->m_nextToDelete) {
        for (const CKaSchemaReference& reference : schema->m_references) {
            CKaSchema* const found = reference.m_pKaSchema;
            if (found == nullptr || found == this || found == last || found->m_nextToDelete != nullptr)
                continue;
            last->m_nextToDelete = found;
            last = found;
        }
        schema->m_references.clear();
    }
    for (CKaSchema* next = m_nextToDelete; next != nullptr;) {
        const std::unique_ptr<CKaSchema> schema(next);
        next = std::exchange(schema->m_nextToDelete, nullptr);
    }
}

void CKaSchema::SetSchemaName(const wchar_t* name) { m_schemaName = RequireName(name, kSchemaNameKind); }
void CKaSchema::SetSchemaPrefix(const wchar_t* prefix) { m_schemaPrefix = RequireName(prefix, kSchemaNameKind); }
const wchar_t* CKaSchema::GetSchemaName() const noexcept { return m_schemaName.c_str(); }
const wchar_t* CKaSchema::GetSchemaPrefix() const noexcept { return m_schemaPrefix.c_str(); }
std::wstring& CKaSchema::SchemaName() noexcept { return m_schemaName; }
std::wstring& CKaSchema::SchemaPrefix() noexcept { return m_schemaPrefix; }

void CKaSchema::SetDisplayLabel(const wchar_t* label) {
    m_displayLabel = RequireNotNull(label, L"label", L"CKaSchema::SetDisplayLabel");
}

const wchar_t* CKaSchema::GetDisplayLabel() const noexcept { return m_displayLabel.c_str(); }
std::wstring CKaSchema::DisplayLabel() const { return m_displayLabel; }

void CKaSchema::SetVersionString(const wchar_t* version) {
    ParseVersionString(version, &m_versionMajor, &m_versionMinor);
}

std::wstring CKaSchema::VersionString() const {
    std::wstring version;
    FormatVersionString(version, m_versionMajor, m_versionMinor);
    return version;
}

std::wstring CKaSchema::XmlNamespace() const { return Concat(m_schemaName, L".", VersionString()); }

std::wstring CKaSchema::OfficialFilename() const {
    NameIsValid(m_schemaName.c_str(), 1, kSchemaNameKind);
    return XmlNamespace() + L".kaschema.xml";
}

const wchar_t* CKaSchema::GetSearchPath() const noexcept { return m_searchPath.c_str(); }

void CKaSchema::SetSearchPath(const wchar_t* searchPath) {
    m_searchPath = RequireNotNull(searchPath, L"searchPath", L"CKaSchema::SetSearchPath");
}

} // namespace KAXML

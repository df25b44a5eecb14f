#include <kaxml/kaschemaxml/schema/relationship_class.h>

#include <kaxml/kaschemaxml/schema/base_chain.h>
#include <kaxml/kaschemaxml/schema/class_resolution.h>
#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaschemaxml/schema/model_copier.h>
#include <kaxml/kaschemaxml/schema/relationship_constraint.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/core/make_room.h>

#include <algorithm>

namespace KAXML {

namespace {

// A prefixed name can only be meant as a full name; a bare one, and a prefix that nobody has, go
// the way of all names of ends.
CKaClass* ResolveClassOfEnd(CKaSchema* schema, CKaRelationshipClass* relationshipClass, const wchar_t* className) {
    const std::wstring_view name(className);
    const std::size_t colon = name.find(L':');
    if (colon != std::wstring_view::npos && colon != 0) {
        const std::wstring prefix(name.substr(0, colon));
        if (const CKaSchema* const referenced = schema->FindReferencedSchemaByPrefix(prefix.c_str()))
            if (CKaClass* const found = referenced->FindKaClass(className + colon + 1, KA_ANY_CLASS_TYPE))
                return found;
    }
    return ResolveKaClass(schema, relationshipClass, className);
}

std::vector<std::wstring_view> NamesOfChain(const CKaClass* kaClass) {
    std::vector<std::wstring_view> names;
    for (BaseChain chain(kaClass); chain.Current() != nullptr; chain.Next())
        names.push_back(chain.Current()->TypeName());
    return names;
}

} // namespace

CKaRelationshipClass::CKaRelationshipClass(const wchar_t* name, CKaSchema* schema, CIDGenerationStrategy* strategy)
    : CKaClass(name, schema, strategy) {
    m_source.m_pOwner = this;
    m_targets.m_pOwner = this;
}

CKaRelationshipClass::CKaRelationshipClass(const CKaRelationshipClass& other)
    : CKaClass(other), m_source(other.m_source), m_targets(other.m_targets), m_strength(other.m_strength),
      m_strengthDirection(other.m_strengthDirection) {
    m_source.m_pOwner = this;
    m_targets.m_pOwner = this;
    ModelCopier copier;
    copier.RegisterClass(other, *this);
    copier.RelinkClass(*this);
}

CKaRelationshipClass& CKaRelationshipClass::operator=(const CKaRelationshipClass& other) {
    if (this != &other) {
        CKaRelationshipClass copy(other);
        ModelCopier copier;
        copier.Register(static_cast<CKaClass*>(&copy), static_cast<CKaClass*>(this));
        ModelCopier::Swap(*this, copy);
        m_source = std::move(copy.m_source);
        m_targets = std::move(copy.m_targets);
        m_source.m_pOwner = this;
        m_targets.m_pOwner = this;
        m_strength.swap(copy.m_strength);
        m_strengthDirection.swap(copy.m_strengthDirection);
        copier.RelinkClass(*this);
    }
    return *this;
}

CKaRelationshipClass::~CKaRelationshipClass() = default;

const wchar_t* CKaRelationshipClass::GetStrength() const noexcept { return m_strength.c_str(); }
const wchar_t* CKaRelationshipClass::GetStrengthDirection() const noexcept { return m_strengthDirection.c_str(); }

void CKaRelationshipClass::SetStrength(const wchar_t* strength) {
    m_strength = RequireNotNull(strength, L"strength", L"CKaRelationshipClass::SetStrength");
}

void CKaRelationshipClass::SetStrengthDirection(const wchar_t* direction) {
    m_strengthDirection = RequireNotNull(direction, L"direction", L"CKaRelationshipClass::SetStrengthDirection");
}

int CKaRelationshipClass::FindCommonClass(CKaSchema* schema, const wchar_t* className1, const wchar_t* className2,
                                          std::wstring& result) {
    constexpr wchar_t operation[] = L"CKaRelationshipClass::FindCommonClass";
    RequireNotNull(schema, L"schema", operation);
    const std::wstring_view name1(RequireNotNull(className1, L"className1", operation));
    const std::wstring_view name2(RequireNotNull(className2, L"className2", operation));
    if (name1 == name2) {
        result = std::wstring(name1);
        return 0;
    }
    if (name1 == KAXML_ANY_CLASS || name2 == KAXML_ANY_CLASS) {
        result = KAXML_ANY_CLASS;
        return 1;
    }
    const CKaClass* const class1 = ResolveClassOfEnd(schema, this, className1);
    const CKaClass* const class2 = ResolveClassOfEnd(schema, this, className2);
    const std::vector<std::wstring_view> names1 = NamesOfChain(class1);
    const std::vector<std::wstring_view> names2 = NamesOfChain(class2);
    const auto common = std::find_first_of(names2.begin(), names2.end(), names1.begin(), names1.end());
    result = std::wstring(common == names2.end() ? std::wstring_view(KAXML_ANY_CLASS) : *common);
    return 1;
}

void CKaRelationshipClass::UpgradeLegacyKaRelationshipConstraint(CKaSchema* schema,
                                                                 CKaRelationshipConstraint* constraint) {
    RequireNotNull(constraint, L"constraint", L"CKaRelationshipClass::UpgradeLegacyKaRelationshipConstraint");
    UpgradeLegacySource(schema, constraint->GetSourceConstraint());
    UpgradeLegacyTarget(schema, constraint->GetTargetConstraint());
}

void CKaRelationshipClass::UpgradeLegacySource(CKaSchema* schema, CKaConstraint* constraint) {
    RequireNotNull(schema, L"schema", L"CKaRelationshipClass::UpgradeLegacySource");
    RequireNotNull(constraint, L"constraint", L"CKaRelationshipClass::UpgradeLegacySource");
    CKaClass* const kaClass = ResolveKaClass(schema, this, constraint->GetClassNameW());
    std::wstring className = schema->GetRelativeClassName(kaClass);
    if (m_targets.m_classNames.empty()) {
        m_source.m_roleLabel = constraint->m_roleLabel;
        m_source.m_className.swap(className);
        m_source.m_isPolymorphic = 0;
        m_source.m_keyVector.insert(m_source.m_keyVector.end(), constraint->m_keyVector.begin(),
                                    constraint->m_keyVector.end());
        return;
    }
    std::wstring common;
    if (FindCommonClass(schema, m_source.m_className.c_str(), className.c_str(), common) != 0)
        m_source.m_isPolymorphic = 1;
    m_source.m_className.swap(common);
}

void CKaRelationshipClass::UpgradeLegacyTarget(CKaSchema* schema, CKaConstraint* constraint) {
    RequireNotNull(schema, L"schema", L"CKaRelationshipClass::UpgradeLegacyTarget");
    RequireNotNull(constraint, L"constraint", L"CKaRelationshipClass::UpgradeLegacyTarget");
    CKaClass* const kaClass = ResolveKaClass(schema, this, constraint->GetClassNameW());
    std::vector<std::wstring>& names = m_targets.m_classNames;
    if (names.empty())
        m_targets.m_roleLabel = constraint->m_roleLabel;
    std::wstring className = schema->GetRelativeClassName(kaClass);
    if (std::find(names.begin(), names.end(), className) != names.end())
        return;
    // Both lists grow or neither: they run side by side.
    MakeRoomForOne(names);
    m_targets.m_keyVectors.push_back(constraint->m_keyVector);
    names.push_back(std::move(className));
}

} // namespace KAXML

#include <kaxml/kaschemaxml/schema/relationship_constraint.h>

#include <kaxml/kaxml/core/arguments.h>

namespace KAXML {

namespace {

void Replace(std::unique_ptr<CKaConstraint>& held, CKaConstraint* constraint) noexcept {
    if (held.get() != constraint)
        held.reset(constraint);
}

} // namespace

CKaConstraint::CKaConstraint() = default;

CKaConstraint::CKaConstraint(const std::wstring& className, const wchar_t* key) : m_className(className) {
    AddKaRelationshipKey(key);
}

CKaConstraint::CKaConstraint(const CKaConstraint& other) = default;

CKaConstraint& CKaConstraint::operator=(const CKaConstraint& other) {
    CKaConstraint copy(other);
    m_className.swap(copy.m_className);
    m_roleLabel.swap(copy.m_roleLabel);
    m_keyVector.swap(copy.m_keyVector);
    return *this;
}

CKaConstraint::~CKaConstraint() = default;

const wchar_t* CKaConstraint::GetClassNameW() const noexcept { return m_className.c_str(); }

void CKaConstraint::SetClassName(const wchar_t* className) {
    if (className != nullptr)
        m_className = className;
}

const wchar_t* CKaConstraint::GetRoleLabel() const noexcept { return m_roleLabel.c_str(); }

void CKaConstraint::SetRoleLabel(const wchar_t* roleLabel) {
    if (roleLabel != nullptr)
        m_roleLabel = roleLabel;
}

void CKaConstraint::AddKaRelationshipKey(const wchar_t* key) {
    if (key != nullptr)
        m_keyVector.emplace_back(key);
}

unsigned int CKaConstraint::GetKaRelationshipKeyCount() const noexcept {
    return static_cast<unsigned int>(m_keyVector.size());
}

std::wstring CKaConstraint::GetKaRelationshipKey(unsigned int index) const {
    RequireIndex(index, m_keyVector.size(), L"CKaConstraint::GetKaRelationshipKey");
    return m_keyVector[index];
}

CKaRelationshipConstraint::CKaRelationshipConstraint() = default;

CKaRelationshipConstraint::CKaRelationshipConstraint(const CKaRelationshipConstraint& other) {
    if (other.m_pSourceConstraint)
        m_pSourceConstraint = std::make_unique<CKaConstraint>(*other.m_pSourceConstraint);
    if (other.m_pTargetConstraint)
        m_pTargetConstraint = std::make_unique<CKaConstraint>(*other.m_pTargetConstraint);
}

CKaRelationshipConstraint& CKaRelationshipConstraint::operator=(const CKaRelationshipConstraint& other) {
    CKaRelationshipConstraint copy(other);
    m_pSourceConstraint.swap(copy.m_pSourceConstraint);
    m_pTargetConstraint.swap(copy.m_pTargetConstraint);
    return *this;
}

CKaRelationshipConstraint::~CKaRelationshipConstraint() = default;

CKaConstraint* CKaRelationshipConstraint::GetSourceConstraint() const noexcept { return m_pSourceConstraint.get(); }
CKaConstraint* CKaRelationshipConstraint::GetTargetConstraint() const noexcept { return m_pTargetConstraint.get(); }

void CKaRelationshipConstraint::SetSourceConstraint(CKaConstraint* constraint) noexcept {
    Replace(m_pSourceConstraint, constraint);
}

void CKaRelationshipConstraint::SetTargetConstraint(CKaConstraint* constraint) noexcept {
    Replace(m_pTargetConstraint, constraint);
}

} // namespace KAXML

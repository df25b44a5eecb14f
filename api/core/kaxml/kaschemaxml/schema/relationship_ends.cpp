#include <kaxml/kaschemaxml/schema/relationship_ends.h>

#include <kaxml/kaschemaxml/instance/custom_attribute.h>

namespace KAXML {

// An end that has an owner, because a relationship class holds it, keeps that owner when another is
// assigned to it.

CKaSource::CKaSource() = default;
CKaSource::CKaSource(const CKaSource& other) = default;
CKaSource::CKaSource(CKaSource&& other) noexcept = default;
CKaSource::~CKaSource() = default;

CKaSource& CKaSource::operator=(const CKaSource& other) {
    if (this != &other)
        *this = CKaSource(other);
    return *this;
}

CKaSource& CKaSource::operator=(CKaSource&& other) noexcept {
    if (this != &other) {
        CKaCommon::operator=(static_cast<CKaCommon&&>(other));
        m_pOwner = m_pOwner != nullptr ? m_pOwner : other.m_pOwner;
        m_roleLabel = std::move(other.m_roleLabel);
        m_className = std::move(other.m_className);
        m_keyVector = std::move(other.m_keyVector);
        m_cardinality = std::move(other.m_cardinality);
        m_isPolymorphic = other.m_isPolymorphic;
    }
    return *this;
}

CKaTargets::CKaTargets() = default;
CKaTargets::CKaTargets(const CKaTargets& other) = default;
CKaTargets::CKaTargets(CKaTargets&& other) noexcept = default;
CKaTargets::~CKaTargets() = default;

CKaTargets& CKaTargets::operator=(const CKaTargets& other) {
    if (this != &other)
        *this = CKaTargets(other);
    return *this;
}

CKaTargets& CKaTargets::operator=(CKaTargets&& other) noexcept {
    if (this != &other) {
        CKaCommon::operator=(static_cast<CKaCommon&&>(other));
        m_pOwner = m_pOwner != nullptr ? m_pOwner : other.m_pOwner;
        m_roleLabel = std::move(other.m_roleLabel);
        m_classNames = std::move(other.m_classNames);
        m_keyVectors = std::move(other.m_keyVectors);
        m_cardinality = std::move(other.m_cardinality);
        m_isPolymorphic = other.m_isPolymorphic;
    }
    return *this;
}

} // namespace KAXML

#include <kaxml/kaschemaxml/schema/relationship_ends.h>

#include <kaxml/kaschemaxml/instance/custom_attribute.h>

namespace KAXML {

CKaSource::CKaSource() = default;
CKaSource::CKaSource(const CKaSource& other) = default;
CKaSource::CKaSource(CKaSource&& other) noexcept = default;
CKaSource& CKaSource::operator=(CKaSource&& other) noexcept = default;
CKaSource::~CKaSource() = default;

CKaSource& CKaSource::operator=(const CKaSource& other) {
    if (this != &other)
        *this = CKaSource(other);
    return *this;
}

CKaTargets::CKaTargets() = default;
CKaTargets::CKaTargets(const CKaTargets& other) = default;
CKaTargets::CKaTargets(CKaTargets&& other) noexcept = default;
CKaTargets& CKaTargets::operator=(CKaTargets&& other) noexcept = default;
CKaTargets::~CKaTargets() = default;

CKaTargets& CKaTargets::operator=(const CKaTargets& other) {
    if (this != &other)
        *this = CKaTargets(other);
    return *this;
}

} // namespace KAXML

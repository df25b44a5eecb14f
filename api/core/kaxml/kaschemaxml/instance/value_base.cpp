#include <kaxml/kaschemaxml/instance/value.h>

#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaxml/core/errors.h>

namespace KAXML {

KaValueBase::KaValueBase(CKaProperty* property) : m_status(kNullStatus) { Reinitialize(property); }

KaValueBase::KaValueBase(const KaValueBase& other)
    : m_pProperty(other.m_pProperty), m_propertyName(other.m_propertyName), m_status(other.m_status) {}

KaValueBase& KaValueBase::operator=(const KaValueBase& other) {
    if (this != &other) {
        m_propertyName = other.m_propertyName;
        m_pProperty = other.m_pProperty;
        m_status = other.m_status;
    }
    return *this;
}

KaValueBase::~KaValueBase() = default;

void KaValueBase::RequireProperty(const CKaProperty* property) {
    if (property == nullptr)
        throw KAXMLInvalidArgument(L"Passed NULL pKaProperty to KaValueBase::Reinitialize");
}

void KaValueBase::Reinitialize(CKaProperty* property) {
    m_propertyName.clear();
    m_status = kNullStatus;
    RequireProperty(property);
    m_pProperty = property;
    m_propertyName = property->PropertyName();
}

CKaProperty* KaValueBase::GetProperty() const noexcept { return m_pProperty; }
const wchar_t* KaValueBase::GetPropertyName() const noexcept { return m_propertyName.c_str(); }
std::wstring& KaValueBase::PropertyName() noexcept { return m_propertyName; }
const std::wstring& KaValueBase::PropertyName() const noexcept { return m_propertyName; }
void KaValueBase::SetPropertyName(std::wstring name) noexcept { m_propertyName.swap(name); }
bool KaValueBase::IsNull() const noexcept { return (m_status & kNullStatus) != 0; }
void KaValueBase::SetToNull() noexcept { m_status |= kNullStatus; }
void KaValueBase::SetNotNull() noexcept { m_status &= ~kNullStatus; }

KaValueBase* KaValueBase::CreateKaValueForKaProperty(CKaClass* kaClass, CKaProperty* property) {
    if (kaClass == nullptr || property == nullptr)
        throw KAXMLInvalidArgument(L"NULL pKaClass or pKaProperty passed to CreateKaValueForKaProperty");
    if (property->IsArray() != 0)
        return new KaArrayValue(property);
    if (property->IsStruct() != 0)
        return new KaStructValue(property);
    return CKaSchema::GetRecycledKaValue(property);
}

} // namespace KAXML

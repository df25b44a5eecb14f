#include <kaxml/kaschemaxml/instance/instance.h>
#include <kaxml/kaschemaxml/schema/class.h>
#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaxml/core/errors.h>

namespace KAXML {

namespace {

// The class named by the property's type, as the schema of the property's class knows it. A prefix
// in the name is not interpreted.
CKaClass& StructClassOf(const CKaProperty& property) {
    const CKaClass* const owner = property.GetKaClass();
    const CKaSchema* const schema = owner == nullptr ? nullptr : owner->GetKaSchema();
    CKaClass* const found =
        schema == nullptr ? nullptr : schema->FindKaClass(property.GetTypeName(), KA_ANY_CLASS_TYPE);
    if (found == nullptr)
        throw KAXMLRuntimeError(L"Could not find class for struct property");
    return *found;
}

} // namespace

KaStructValue::KaStructValue(CKaProperty* property)
    : KaValueBase(property), m_pInstance(std::make_unique<CKaInstance>(&StructClassOf(*property))) {
    SetNotNull();
}

KaStructValue::KaStructValue(CKaProperty* property, CKaClass& structClass)
    : KaValueBase(property), m_pInstance(std::make_unique<CKaInstance>(&structClass)) {
    SetNotNull();
}

KaStructValue::KaStructValue(const KaStructValue& other)
    : KaValueBase(other), m_pInstance(other.m_pInstance ? std::make_unique<CKaInstance>(*other.m_pInstance) : nullptr) {
}

KaStructValue& KaStructValue::operator=(const KaStructValue& other) {
    if (this != &other) {
        KaStructValue copy(other);
        KaValueBase::operator=(copy);
        m_pInstance.swap(copy.m_pInstance);
    }
    return *this;
}

KaStructValue::~KaStructValue() = default;

CKaInstance* KaStructValue::GetValue() const noexcept { return m_pInstance.get(); }

void KaStructValue::SetValue(CKaInstance* instance) {
    if (instance != nullptr && instance->TypeName() != GetProperty()->GetTypeName())
        throw KAXMLLogicError(L"Set wrong type of instance into a KaStructValue");
    if (m_pInstance.get() != instance)
        m_pInstance.reset(instance);
    if (instance != nullptr)
        SetNotNull();
    else
        SetToNull();
}

} // namespace KAXML

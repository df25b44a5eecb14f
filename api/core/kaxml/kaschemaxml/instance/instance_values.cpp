#include <kaxml/kaschemaxml/instance/instance.h>
#include <kaxml/kaschemaxml/instance/value_kind.h>
#include <kaxml/kaschemaxml/schema/class.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/format.h>

#include <string_view>

namespace KAXML {

KaValueBase* CKaInstance::FindValue(const wchar_t* name, bool throwIfMissing) const {
    if (name == nullptr)
        throw KAXMLInvalidArgument(L"Passed NULL propertyName to CKaInstance::FindValue");
    const std::wstring_view wanted(name);
    for (const auto& value : m_values)
        if (value->PropertyName() == wanted)
            return value.get();
    if (throwIfMissing)
        throw KAXMLLogicError(
            Concat(L"Failed to find an CKaValue for property ", wanted, L" in CKaInstance::FindValue"));
    return nullptr;
}

KaValueBase* CKaInstance::FindOrCreateValue(const wchar_t* name) {
    if (KaValueBase* const found = FindValue(name, false))
        return found;
    if (m_pKaClass == nullptr)
        throw KAXMLDomainError(Concat(L"Attempted to create a value for property '", name,
                                      L"' in an instance which does not have a class."));
    CKaProperty* const property = m_pKaClass->FindProperty(name);
    if (property == nullptr)
        throw KAXMLDomainError(Concat(L"Attempted to create value for property '", name,
                                      L"' which does not exist in class '", m_pKaClass->TypeName(), L"'"));
    return CreateValue(property);
}

// For a property of whose name there is no value yet.
KaValueBase* CKaInstance::CreateValue(CKaProperty* property) {
    std::unique_ptr<KaValueBase> value(KaValueBase::CreateKaValueForKaProperty(m_pKaClass, property));
    Append(value.get());
    return value.release();
}

// SetPropertyValue for a caller that has found the property already.
void CKaInstance::SetText(CKaProperty* property, const wchar_t* name, const std::wstring& text) {
    KaValueBase* const found = FindValue(name, false);
    CKaValue* const primitive = AsPrimitive(found != nullptr ? found : CreateValue(property));
    if (primitive == nullptr)
        throw KAXMLLogicError(L"Attempted to set primitive value into a non-primitive property");
    primitive->SetValue(text);
}

KaValueBase* CKaInstance::GetPropertyValue(const wchar_t* name, bool throwIfMissing) const {
    return FindValue(name, throwIfMissing);
}

const wchar_t* CKaInstance::GetPropertyValue(const wchar_t* name) const {
    const CKaValue* const value = AsPrimitive(FindValue(name, false));
    return value == nullptr ? nullptr : value->GetValue();
}

void CKaInstance::GetPropertyValue(const wchar_t* name, long* number) const {
    GetPrimitiveValue(name)->GetValue(number);
}

void CKaInstance::GetPropertyValue(const wchar_t* name, double* number) const {
    GetPrimitiveValue(name)->GetValue(number);
}

CKaValue* CKaInstance::GetPrimitiveValue(const wchar_t* name) const {
    CKaValue* const value = AsPrimitive(FindValue(name, true));
    if (value == nullptr)
        throw KAXMLLogicError(L"Called GetPrimitiveValue for a non-primitive CKaValue");
    return value;
}

CKaValue* CKaInstance::GetPrimitiveValueForSetting(const wchar_t* name) {
    CKaValue* const value = AsPrimitive(FindOrCreateValue(name));
    if (value == nullptr)
        throw KAXMLLogicError(L"Attempted to set primitive value into a non-primitive property");
    return value;
}

std::wstring& CKaInstance::PropertyValue(const wchar_t* name) const { return GetPrimitiveValue(name)->Value(); }

template <typename Value> void CKaInstance::SetPrimitive(const wchar_t* name, const Value& value) {
    const std::size_t valuesBefore = m_values.size();
    CKaValue* const primitive = GetPrimitiveValueForSetting(name);
    try {
        primitive->SetValue(value);
    } catch (...) {
        m_values.resize(valuesBefore);
        throw;
    }
}

void CKaInstance::SetPropertyValue(const wchar_t* name, const wchar_t* text) { SetPrimitive(name, text); }
void CKaInstance::SetPropertyValue(const wchar_t* name, const std::wstring& text) { SetPrimitive(name, text); }

void CKaInstance::SetPropertyValue(const wchar_t* name, long number) {
    SetPrimitive(name, static_cast<int>(RequireInt32(number, L"CKaInstance::SetPropertyValue")));
}

void CKaInstance::SetPropertyValue(const wchar_t* name, int number) { SetPrimitive(name, number); }

void CKaInstance::SetPropertyValue(const wchar_t* name, unsigned long number) {
    const std::uint32_t checked = RequireUInt32(number, L"CKaInstance::SetPropertyValue");
    SetPrimitive(name, static_cast<int>(checked));
}

void CKaInstance::SetPropertyValue(const wchar_t* name, unsigned int number) {
    SetPrimitive(name, static_cast<int>(number));
}

void CKaInstance::SetPropertyValue(const wchar_t* name, double number) { SetPrimitive(name, number); }

} // namespace KAXML

#include <kaxml/kaschemaxml/schema/property.h>

#include <kaxml/kaschemaxml/schema/class.h>
#include <kaxml/kaschemaxml/schema/model_copier.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaxml/core/arguments.h>

namespace KAXML {

using namespace std::string_view_literals;

CKaProperty::CKaProperty(CKaClass* owner) : m_pKaClass(owner) {}

CKaProperty::CKaProperty(const CKaProperty& other) = default;

CKaProperty& CKaProperty::operator=(const CKaProperty& other) {
    if (this != &other) {
        CKaProperty copy(other);
        ModelCopier::Swap(*this, copy);
    }
    return *this;
}

CKaProperty::~CKaProperty() = default;

const wchar_t* CKaProperty::GetPropertyName() const noexcept { return m_propertyName.c_str(); }
std::wstring& CKaProperty::PropertyName() noexcept { return m_propertyName; }

void CKaProperty::SetPropertyName(const wchar_t* name) {
    CKaClass::KaNameIsValid(name, 1);
    m_propertyName = name;
}

void CKaProperty::SetPropertyName(const std::wstring& name) { SetPropertyName(name.c_str()); }

const wchar_t* CKaProperty::GetTypeName() const noexcept { return m_typeName.c_str(); }
std::wstring& CKaProperty::TypeName() noexcept { return m_typeName; }

void CKaProperty::SetTypeName(const wchar_t* typeName) {
    if (typeName == nullptr)
        throw KAXMLInvalidArgument(L"Passed NULL typeName to CKaProperty::SetTypeName");
    const int isPrimitive = CKaSchema::IsPrimitiveType(typeName);
    m_typeName = typeName;
    m_isStruct = isPrimitive != 0 ? 0 : 1;
}

void CKaProperty::SetTypeName(const std::wstring& typeName) { SetTypeName(typeName.c_str()); }

const wchar_t* CKaProperty::GetMinOccurs() const noexcept { return m_minOccurs.c_str(); }
const wchar_t* CKaProperty::GetMaxOccurs() const noexcept { return m_maxOccurs.c_str(); }

void CKaProperty::SetMinOccurs(const wchar_t* minOccurs) {
    if (minOccurs == nullptr)
        throw KAXMLInvalidArgument(L"passed NULL minOccurs into CKaProperty::SetMinOccurs");
    m_minOccurs = minOccurs;
    if (m_minOccurs != L"1"sv)
        m_isArray = 1;
}

void CKaProperty::SetMaxOccurs(const wchar_t* maxOccurs) {
    if (maxOccurs == nullptr)
        throw KAXMLInvalidArgument(L"passed NULL maxOccurs into CKaProperty::SetMaxOccurs");
    m_maxOccurs = maxOccurs;
    if (m_maxOccurs != L"1"sv)
        m_isArray = 1;
}

const wchar_t* CKaProperty::GetDisplayLabel() const noexcept { return m_displayLabel.c_str(); }

void CKaProperty::SetDisplayLabel(const wchar_t* label) {
    m_displayLabel = RequireNotNull(label, L"label", L"CKaProperty::SetDisplayLabel");
}

int CKaProperty::IsStruct() const noexcept { return m_isStruct; }
int CKaProperty::IsArray() const noexcept { return m_isArray; }
int CKaProperty::ReadOnly() const noexcept { return m_readOnly; }
void CKaProperty::SetReadOnly(int readOnly) noexcept { m_readOnly = readOnly; }

CKaClass* CKaProperty::GetKaClass() const noexcept { return m_pKaClass; }

long CKaProperty::GetAttrId() const noexcept { return m_attrId; }
void CKaProperty::SetAttrId(long attrId) { m_attrId = RequireInt32(attrId, L"CKaProperty::SetAttrId"); }

const wchar_t* CKaProperty::GetClassDefaultValue() const noexcept {
    return m_classDefaultValueNotSet ? nullptr : m_classDefaultValue.c_str();
}

void CKaProperty::SetClassDefaultValue(const wchar_t* value) {
    if (value != nullptr)
        m_classDefaultValue = value;
    m_classDefaultValueNotSet = value == nullptr;
}

} // namespace KAXML

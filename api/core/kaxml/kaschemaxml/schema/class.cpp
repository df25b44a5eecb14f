#include <kaxml/kaschemaxml/schema/class.h>

#include <kaxml/kaschemaxml/schema/base_chain.h>
#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaschemaxml/schema/model_copier.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/relationship_class.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/format.h>

#include <algorithm>

namespace KAXML {

namespace {

constexpr unsigned long kLow32Bits = 0xFFFFFFFF;

std::wstring LowerHex(unsigned long value) {
    std::wstring digits;
    do {
        digits.insert(digits.begin(), L"0123456789abcdef"[value & 0xF]);
        value >>= 4;
    } while (value != 0);
    return digits;
}

// Null when there is no such class.
CKaClass* FindBaseCandidate(const CKaSchema& schema, const wchar_t* fullName, bool isRelationshipClass) {
    if (isRelationshipClass)
        if (CKaClass* const found = schema.FindKaRelationshipClassUsingFullName(fullName, KA_ANY_CLASS_TYPE))
            return found;
    return schema.FindKaClassUsingFullName(fullName, KA_ANY_CLASS_TYPE);
}

} // namespace

CKaClass::CKaClass(const wchar_t* name, CKaSchema* schema, CIDGenerationStrategy* strategy)
    : m_pIDGenerationStrategy(strategy), m_pKaSchema(schema) {
    if (schema == nullptr)
        throw KAXMLInvalidArgument(L"Passed NULL pKaSchema into CKaClass constructor");
    if (name == nullptr || *name == L'\0')
        throw KAXMLInvalidArgument(L"Passed NULL or blank classname into CKaClass constructor");
    KaNameIsValid(name, 1);
    m_typeName = name;
}

CKaClass::CKaClass(const CKaClass& other)
    : CKaCommon(other), m_typeName(other.m_typeName), m_baseClassName(other.m_baseClassName),
      m_displayLabel(other.m_displayLabel), m_pBaseClass(other.m_pBaseClass), m_isStruct(other.m_isStruct),
      m_isCustomAttributeClass(other.m_isCustomAttributeClass), m_isDomainClass(other.m_isDomainClass),
      m_pIDGenerationStrategy(other.m_pIDGenerationStrategy), m_pKaSchema(other.m_pKaSchema) {
    m_properties.reserve(other.m_properties.size());
    for (const auto& property : other.m_properties)
        m_properties.push_back(std::make_unique<CKaProperty>(*property));
    ModelCopier copier;
    copier.RegisterClass(other, *this);
    copier.RelinkClass(*this);
}

CKaClass& CKaClass::operator=(const CKaClass& other) {
    if (this != &other) {
        CKaClass copy(other);
        ModelCopier copier;
        copier.Register(&copy, this);
        ModelCopier::Swap(*this, copy);
        copier.RelinkClass(*this);
    }
    return *this;
}

CKaClass::~CKaClass() {
    m_properties.clear();
    m_pKaSchema = nullptr;
}

const wchar_t* CKaClass::GetTypeName() const noexcept { return m_typeName.c_str(); }
std::wstring& CKaClass::TypeName() noexcept { return m_typeName; }
const std::wstring& CKaClass::TypeName() const noexcept { return m_typeName; }

void CKaClass::SetTypeName(const wchar_t* name) {
    if (name == nullptr)
        throw KAXMLInvalidArgument(L"NULL passed to CKaClass::SetTypeName");
    KaNameIsValid(name, 1);
    m_typeName = name;
}

void CKaClass::SetTypeName(const std::wstring& name) { SetTypeName(name.c_str()); }

const wchar_t* CKaClass::GetDisplayLabel() const noexcept { return m_displayLabel.c_str(); }

void CKaClass::SetDisplayLabel(const wchar_t* label) {
    m_displayLabel = RequireNotNull(label, L"label", L"CKaClass::SetDisplayLabel");
}

const wchar_t* CKaClass::GetBaseClass() const noexcept { return m_baseClassName.c_str(); }

void CKaClass::SetBaseClass(const wchar_t* fullName) {
    RequireNotNull(fullName, L"fullName", L"CKaClass::SetBaseClass");
    std::wstring prefix;
    std::wstring className;
    CKaSchema::ParseKaClassName(fullName, prefix, className);
    KaNameIsValid(className.c_str(), 1);
    if (m_pKaSchema == nullptr)
        throw KAXMLLogicError(L"Attempting to SetBaseClass of an KaClass that has no m_pKaSchema");
    const bool isRelationshipClass = dynamic_cast<CKaRelationshipClass*>(this) != nullptr;
    CKaClass* const base = FindBaseCandidate(*m_pKaSchema, fullName, isRelationshipClass);
    if (base == nullptr)
        throw KAXMLLogicError(Concat(L"Attempted to set BaseClass of KaClass '", m_typeName, L"' to '", fullName,
                                     L"' but no such class can be found in this KaSchema or referenenced KaSchemas."));
    for (BaseChain chain(base); chain.Current() != nullptr; chain.Next())
        if (chain.Current() == this)
            throw KAXMLLogicError(Concat(L"Attempted to set BaseClass of KaClass '", m_typeName, L"' to '", fullName,
                                         L"' but KaClass '", base->m_typeName, L"' is or derives from KaClass '",
                                         m_typeName, L"'."));
    m_baseClassName = m_pKaSchema->GetRelativeClassName(base);
    m_pBaseClass = base;
}

void CKaClass::SetBaseClass(const std::wstring& fullName) { SetBaseClass(fullName.c_str()); }

CKaClass* CKaClass::GetBaseKaClass() const {
    if (m_pBaseClass != nullptr)
        return m_pBaseClass;
    if (m_baseClassName.empty())
        return nullptr;
    if (m_pKaSchema == nullptr)
        throw KAXMLLogicError(L"Attempting to GetBaseKaClass of an KaClass that has no m_pKaSchema");
    const bool isRelationshipClass = dynamic_cast<const CKaRelationshipClass*>(this) != nullptr;
    CKaClass* const base = isRelationshipClass
                               ? m_pKaSchema->FindKaRelationshipClass(m_baseClassName.c_str(), KA_ANY_CLASS_TYPE)
                               : m_pKaSchema->FindKaClass(m_baseClassName.c_str(), KA_ANY_CLASS_TYPE);
    if (base == nullptr)
        throw KAXMLLogicError(Concat(L"GetBaseKaClass is unable to find baseclass '", m_baseClassName, L"' of class '",
                                     m_typeName, L"'."));
    return base;
}

unsigned long CKaClass::GetClassType() const noexcept {
    return (m_isDomainClass != 0 ? KA_DOMAIN_CLASS : 0UL) | (m_isStruct != 0 ? KA_STRUCT_CLASS : 0UL) |
           (m_isCustomAttributeClass != 0 ? KA_CUSTOM_ATTRIBUTE_CLASS : 0UL);
}

void CKaClass::SetClassType(unsigned long classType) {
    const bool isOneOfThree = classType >= 1 && classType <= 7;
    if (!isOneOfThree || (classType & (KA_DOMAIN_CLASS | KA_CUSTOM_ATTRIBUTE_CLASS)) == 0)
        throw KAXMLInvalidArgument(L"Called SetClassType with invalid classType=0x" + LowerHex(classType));
    m_isStruct = static_cast<std::int32_t>(classType & KA_STRUCT_CLASS);
    m_isCustomAttributeClass = static_cast<std::int32_t>(classType & KA_CUSTOM_ATTRIBUTE_CLASS);
    m_isDomainClass = static_cast<std::int32_t>(classType & KA_DOMAIN_CLASS);
}

bool CKaClass::MatchesClassType(unsigned long mask) const noexcept {
    return (mask & kLow32Bits) == KA_ANY_CLASS_TYPE || (mask & GetClassType()) != 0;
}

int CKaClass::IsDomainClass() const noexcept { return m_isDomainClass; }
int CKaClass::IsStruct() const noexcept { return m_isStruct; }
int CKaClass::IsCustomAttributeClass() const noexcept { return m_isCustomAttributeClass; }
void CKaClass::SetIsDomainClass(int isDomainClass) noexcept { m_isDomainClass = isDomainClass; }
void CKaClass::SetIsStruct(int isStruct) noexcept { m_isStruct = isStruct; }
void CKaClass::SetIsCustomAttributeClass(int isCustomAttributeClass) noexcept {
    m_isCustomAttributeClass = isCustomAttributeClass;
}

CKaSchema* CKaClass::GetKaSchema() const noexcept { return m_pKaSchema; }
void CKaClass::SetKaSchema(CKaSchema* schema) noexcept { m_pKaSchema = schema; }

std::wstring CKaClass::FullName() const {
    if (m_pKaSchema == nullptr)
        throw KAXMLLogicError(L"Attempting to get the FullName of KaClass '" + m_typeName +
                              L"' that has no m_pKaSchema");
    return Concat(m_pKaSchema->GetSchemaPrefix(), L":", m_typeName);
}

} // namespace KAXML

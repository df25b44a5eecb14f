#include <kaxml/kaschemaxml/instance/instance.h>

#include <kaxml/kaschemaxml/instance/custom_attribute.h>
#include <kaxml/kaschemaxml/instance/recycled_values.h>
#include <kaxml/kaschemaxml/schema/class.h>
#include <kaxml/kaschemaxml/schema/free_name.h>
#include <kaxml/kaschemaxml/schema/model_copier.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/relationship_class.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/core/make_room.h>

#include <algorithm>
#include <string_view>

namespace KAXML {

namespace {

using Values = std::vector<std::unique_ptr<KaValueBase>>;

CKaClass& RequireClass(CKaClass* kaClass) {
    if (kaClass == nullptr)
        throw KAXMLLogicError(L"You cannot construct a new CKaInstance with a NULL KaClass!");
    return *kaClass;
}

bool HasName(const Values& values, const std::wstring& name) {
    return std::any_of(values.begin(), values.end(),
                       [&name](const auto& value) { return value->PropertyName() == name; });
}

// The name with the first number from 2 on that makes it unique.
std::wstring NumberedName(const Values& values, const std::wstring& base) {
    FreeName name(base, values.size());
    for (const auto& value : values)
        name.Exclude(value->PropertyName());
    return name.Get();
}

} // namespace

CKaInstance::CKaInstance(CKaClass* kaClass) : m_typeName(RequireClass(kaClass).TypeName()), m_pKaClass(kaClass) {}

CKaInstance::CKaInstance(const CKaInstance& other)
    : m_instanceID(other.m_instanceID), m_typeName(other.m_typeName), m_pKaClass(other.m_pKaClass) {
    m_values.reserve(other.m_values.size());
    for (const auto& value : other.m_values) {
        m_values.push_back(ModelCopier::Clone(*value));
        m_values.back()->m_isHeld = true;
    }
}

CKaInstance& CKaInstance::operator=(const CKaInstance& other) {
    if (this != &other) {
        CKaInstance copy(other);
        ModelCopier::Swap(*this, copy);
    }
    return *this;
}

CKaInstance::~CKaInstance() { RecycledValues::DropAll(m_values); }

CKaClass* CKaInstance::GetKaClass() const noexcept { return m_pKaClass; }
const wchar_t* CKaInstance::GetTypeName() const noexcept { return m_typeName.c_str(); }
std::wstring& CKaInstance::TypeName() noexcept { return m_typeName; }
const std::wstring& CKaInstance::TypeName() const noexcept { return m_typeName; }

void CKaInstance::SetTypeName(const wchar_t* typeName) {
    m_typeName = RequireNotNull(typeName, L"typeName", L"CKaInstance::SetTypeName");
}

void CKaInstance::SetTypeName(const std::wstring& typeName) { m_typeName = typeName; }

const wchar_t* CKaInstance::GetInstanceID() const noexcept { return m_instanceID.c_str(); }
std::wstring& CKaInstance::InstanceID() noexcept { return m_instanceID; }
const std::wstring& CKaInstance::InstanceID() const noexcept { return m_instanceID; }

void CKaInstance::SetInstanceID(const wchar_t* instanceId) {
    m_instanceID = RequireNotNull(instanceId, L"instanceId", L"CKaInstance::SetInstanceID");
}

void CKaInstance::SetInstanceID(const std::wstring& instanceId) { m_instanceID = instanceId; }

unsigned int CKaInstance::GetKaValueCount() const noexcept { return static_cast<unsigned int>(m_values.size()); }

KaValueBase* CKaInstance::GetKaValue(unsigned int index) const {
    RequireIndex(index, m_values.size(), L"CKaInstance::GetKaValue");
    return m_values[index].get();
}

void CKaInstance::AddKaValue(KaValueBase* value) {
    if (value == nullptr)
        return;
    if (value->m_isHeld)
        throw KAXMLLogicError(Concat(L"Attempted to add a value of property '", value->PropertyName(),
                                     L"' that an array or instance already holds"));
    if (!HasName(m_values, value->PropertyName())) {
        Append(value);
        return;
    }
    std::wstring name = NumberedName(m_values, value->PropertyName());
    Append(value);
    value->m_propertyName.swap(name);
}

void CKaInstance::Append(KaValueBase* value) {
    MakeRoomForOne(m_values);
    m_values.emplace_back();
    m_values.back().reset(value);
    value->m_isHeld = true;
}

void CKaInstance::RemoveAllKaValues() { RecycledValues::DropAll(m_values); }

KaRelationshipInstance::KaRelationshipInstance(CKaRelationshipClass* relationshipClass)
    : CKaInstance(relationshipClass) {}

KaRelationshipInstance::KaRelationshipInstance(const KaRelationshipInstance& other) = default;

KaRelationshipInstance& KaRelationshipInstance::operator=(const KaRelationshipInstance& other) {
    if (this != &other) {
        KaRelationshipInstance copy(other);
        ModelCopier::Swap(*this, copy);
        m_sourceID.swap(copy.m_sourceID);
        m_targetID.swap(copy.m_targetID);
    }
    return *this;
}

KaRelationshipInstance::~KaRelationshipInstance() = default;

const wchar_t* KaRelationshipInstance::GetSourceID() const noexcept { return m_sourceID.c_str(); }
const wchar_t* KaRelationshipInstance::GetTargetID() const noexcept { return m_targetID.c_str(); }

void KaRelationshipInstance::SetSourceID(const wchar_t* sourceId) {
    m_sourceID = RequireNotNull(sourceId, L"sourceId", L"KaRelationshipInstance::SetSourceID");
}

void KaRelationshipInstance::SetTargetID(const wchar_t* targetId) {
    m_targetID = RequireNotNull(targetId, L"targetId", L"KaRelationshipInstance::SetTargetID");
}

CKaCustomAttribute::CKaCustomAttribute(CKaClass* kaClass) : CKaInstance(kaClass) {}
CKaCustomAttribute::CKaCustomAttribute(const CKaCustomAttribute& other) = default;
CKaCustomAttribute& CKaCustomAttribute::operator=(const CKaCustomAttribute& other) = default;
CKaCustomAttribute::~CKaCustomAttribute() = default;

} // namespace KAXML

#include <kaxml/kaschemaxml/schema/base_chain.h>
#include <kaxml/kaschemaxml/schema/class.h>
#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/core/make_room.h>
#include <kaxml/kaxml/core/same_name.h>

#include <algorithm>
#include <string_view>

namespace KAXML {

namespace {

using Properties = std::vector<std::unique_ptr<CKaProperty>>;

Properties::const_iterator FindOwn(const Properties& properties, std::wstring_view name) {
    return std::find_if(properties.begin(), properties.end(),
                        [name](const auto& property) { return IsSameName(property->PropertyName(), name); });
}

} // namespace

CKaProperty* CKaClass::FindProperty(const wchar_t* name) const {
    if (name == nullptr)
        throw KAXMLInvalidArgument(L"Passed NULL propertyName to CKaClass::FindProperty");
    const std::wstring_view wanted(name);
    for (BaseChain chain(this); chain.Current() != nullptr; chain.Next()) {
        const Properties& properties = chain.Current()->m_properties;
        if (const auto found = FindOwn(properties, wanted); found != properties.end())
            return found->get();
    }
    return nullptr;
}

bool CKaClass::HasProperty(const wchar_t* name) const { return FindProperty(name) != nullptr; }

void CKaClass::AddKaProperty(CKaProperty* property) {
    if (property == nullptr)
        return;
    if (FindProperty(property->GetPropertyName()) != nullptr)
        throw KAXMLDomainError(Concat(L"Attempted to add duplicately named property ", property->GetPropertyName(),
                                      L" to class ", m_typeName));
    if (property->IsStruct() != 0) {
        if (m_pKaSchema == nullptr)
            throw KAXMLLogicError(L"Attempting to add a struct property to KaClass '" + m_typeName +
                                  L"' that has no m_pKaSchema");
        if (m_pKaSchema->FindKaClass(property->GetTypeName(), KA_ANY_CLASS_TYPE) == nullptr)
            throw KAXMLLogicError(Concat(L"KaProperty ", property->GetPropertyName(), L" has TypeName=",
                                         property->GetTypeName(),
                                         L" but no KaClass with that name exists in the KaSchema."));
    }
    MakeRoomForOne(m_properties);
    m_properties.emplace_back(property);
}

CKaProperty* CKaClass::AddKaProperty(const std::wstring& name, const std::wstring& typeName,
                                     const std::wstring& description) {
    auto property = std::make_unique<CKaProperty>(this);
    property->SetPropertyName(name);
    property->SetTypeName(typeName);
    property->SetDescription(description);
    AddKaProperty(property.get());
    return property.release();
}

unsigned int CKaClass::GetKaPropertyCount() const noexcept { return static_cast<unsigned int>(m_properties.size()); }

CKaProperty* CKaClass::GetKaProperty(unsigned int index) const {
    RequireIndex(index, m_properties.size(), L"CKaClass::GetKaProperty");
    return m_properties[index].get();
}

void CKaClass::RemoveKaProperty(const wchar_t* name) {
    if (name == nullptr)
        return;
    if (const auto found = FindOwn(m_properties, name); found != m_properties.end())
        m_properties.erase(found);
}

void CKaClass::RemoveAllKaProperties() noexcept { m_properties.clear(); }

} // namespace KAXML

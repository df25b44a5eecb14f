#include <kaxml/kaschemaxml/instance/instance.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaxml/core/errors.h>

#include <algorithm>

namespace KAXML {

namespace {

constexpr std::size_t kSpareCapacity = 1024;

// A string that collects many instances grows by doubling, not with every one of them.
void MakeRoom(std::wstring& output) {
    if (output.capacity() - output.size() < kSpareCapacity)
        output.reserve(std::max(2 * output.capacity(), kSpareCapacity));
}

} // namespace

void CKaInstance::AppendAsXml(std::wstring& output, const std::wstring& attributes) const {
    MakeRoom(output);
    output += L'<';
    output += m_typeName;
    if (!m_instanceID.empty()) {
        output += L" instanceid='";
        output += m_instanceID;
        output += L"' ";
    }
    if (!attributes.empty()) {
        output += attributes;
        output += L' ';
    }
    output += L'>';
    AppendValueToString(output);
    output += L"</";
    output += m_typeName;
    output += L'>';
}

void CKaInstance::AppendValueToString(std::wstring& output) const {
    for (const auto& value : m_values)
        value->AppendAsXml(output);
}

void KaValueBase::AppendAsXml(std::wstring& output) const {
    output += L'<';
    output += m_propertyName;
    output += L'>';
    AppendValueToString(output);
    output += L"</";
    output += m_propertyName;
    output += L'>';
}

void CKaValue::AppendValueToString(std::wstring& output) const {
    if (!IsNull())
        output += m_value;
}

void KaArrayValue::AppendValueToString(std::wstring& output) const {
    const std::wstring tag = GetProperty()->TypeName() + L'>';
    for (const auto& member : m_members) {
        output += L'<';
        output += tag;
        if (member)
            member->AppendValueToString(output);
        output += L"</";
        output += tag;
    }
}

void KaStructValue::AppendValueToString(std::wstring& output) const {
    if (!m_pInstance)
        throw KAXMLLogicError(L"Can't serialize a NULL struct");
    m_pInstance->AppendValueToString(output);
}

} // namespace KAXML

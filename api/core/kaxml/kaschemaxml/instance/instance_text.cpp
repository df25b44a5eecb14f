#include <kaxml/kaschemaxml/instance/instance.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaxml/core/errors.h>

#include <algorithm>
#include <string_view>

namespace KAXML {

namespace {

constexpr std::size_t kSpareCapacity = 1024;

// A string that collects many instances grows by doubling, not with every one of them.
void MakeRoom(std::wstring& output) {
    if (output.capacity() - output.size() < kSpareCapacity)
        output.reserve(std::max(2 * output.capacity(), kSpareCapacity));
}

// Appends "<name>", or "</name>" with a slash, by one growth of the text.
void AppendTag(std::wstring& output, std::wstring_view start, std::wstring_view name) {
    const std::size_t begin = output.size();
    output.resize(begin + start.size() + name.size() + 1, L'>');
    wchar_t* const end = std::copy(start.begin(), start.end(), output.data() + begin);
    std::copy(name.begin(), name.end(), end);
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
    AppendTag(output, L"</", m_typeName);
}

void CKaInstance::AppendValueToString(std::wstring& output) const {
    for (const auto& value : m_values)
        value->AppendAsXml(output);
}

void KaValueBase::AppendAsXml(std::wstring& output) const {
    AppendTag(output, L"<", m_propertyName);
    AppendValueToString(output);
    AppendTag(output, L"</", m_propertyName);
}

void CKaValue::AppendValueToString(std::wstring& output) const {
    if (!IsNull())
        output += m_value;
}

void KaArrayValue::AppendValueToString(std::wstring& output) const {
    const std::wstring& name = GetProperty()->TypeName();
    for (const auto& member : m_members) {
        AppendTag(output, L"<", name);
        if (member)
            member->AppendValueToString(output);
        AppendTag(output, L"</", name);
    }
}

void KaStructValue::AppendValueToString(std::wstring& output) const {
    if (!m_pInstance)
        throw KAXMLLogicError(L"Can't serialize a NULL struct");
    m_pInstance->AppendValueToString(output);
}

} // namespace KAXML

#include <kaxml/kaxml/reader/xml_attributes.h>

#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/platform/sax.h>

#include <cwchar>

namespace KAXML {

XMLAttributes::XMLAttributes(ISAXAttributes* attributes) : m_pAttributes(attributes) {
    if (attributes == nullptr)
        throw KAXMLInvalidArgument(L"Passed NULL to XMLAttributes constructor");
}

int XMLAttributes::GetValue(const wchar_t* name, std::wstring& value) const {
    const int length = static_cast<int>(std::wcslen(RequireNotNull(name, L"name", L"XMLAttributes::GetValue")));
    return m_pAttributes->getValueFromName(L"", 0, name, length, value) == S_OK ? 1 : 0;
}

int XMLAttributes::GetValue(const std::wstring& name, std::wstring& value) const {
    return GetValue(name.c_str(), value);
}

} // namespace KAXML

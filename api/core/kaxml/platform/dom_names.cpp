#include <kaxml/platform/dom_names.h>

namespace KAXML {

const XmlName& FixedNames::Document() {
    static const XmlName name{L"", L"", L"#document"};
    return name;
}

const XmlName& FixedNames::Text() {
    static const XmlName name{L"", L"", L"#text"};
    return name;
}

const XmlName& FixedNames::CDataSection() {
    static const XmlName name{L"", L"", L"#cdata-section"};
    return name;
}

const XmlName& FixedNames::Comment() {
    static const XmlName name{L"", L"", L"#comment"};
    return name;
}

const XmlName* IXMLDOMDocument2::NameTable::Find(std::wstring_view namespaceUri,
                                                 std::wstring_view qualifiedName) noexcept {
    if (qualifiedName.empty())
        return nullptr;
    const std::size_t mixed = qualifiedName.size() * 7 + static_cast<std::size_t>(qualifiedName.front()) * 3 +
                              static_cast<std::size_t>(qualifiedName.back());
    const XmlName*& recent = m_recent[mixed % m_recent.size()];
    if (recent != nullptr && recent->qualifiedName == qualifiedName && recent->namespaceUri == namespaceUri)
        return recent;
    const auto found = m_names.find({namespaceUri, qualifiedName});
    if (found == m_names.end())
        return nullptr;
    recent = found->second.get();
    return recent;
}

const XmlName* IXMLDOMDocument2::NameTable::FindOrAdd(std::wstring_view namespaceUri, std::wstring_view qualifiedName) {
    if (const XmlName* const found = Find(namespaceUri, qualifiedName))
        return found;
    const std::wstring_view localName = qualifiedName.substr(qualifiedName.find(L':') + 1);
    auto name = std::make_unique<const XmlName>(
        XmlName{std::wstring(namespaceUri), std::wstring(localName), std::wstring(qualifiedName)});
    const Key own(name->namespaceUri, name->qualifiedName);
    return m_names.emplace(own, std::move(name)).first->second.get();
}

} // namespace KAXML

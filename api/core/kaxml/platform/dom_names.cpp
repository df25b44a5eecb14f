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

const XmlName* IXMLDOMDocument2::NameTable::Find(std::wstring_view namespaceUri, std::wstring_view localName,
                                                 std::wstring_view qualifiedName) {
    if (qualifiedName.empty())
        return FindOrAdd({namespaceUri, localName, qualifiedName});
    const std::size_t mixed = qualifiedName.size() * 7 + static_cast<std::size_t>(qualifiedName.front()) * 3 +
                              static_cast<std::size_t>(qualifiedName.back());
    const XmlName*& recent = m_recent[mixed % m_recent.size()];
    if (recent == nullptr || recent->qualifiedName != qualifiedName || recent->localName != localName ||
        recent->namespaceUri != namespaceUri)
        recent = FindOrAdd({namespaceUri, localName, qualifiedName});
    return recent;
}

const XmlName* IXMLDOMDocument2::NameTable::FindOrAdd(const Key& key) {
    const auto found = m_names.find(key);
    if (found != m_names.end())
        return found->second.get();
    const auto& [namespaceUri, localName, qualifiedName] = key;
    auto name = std::make_unique<const XmlName>(
        XmlName{std::wstring(namespaceUri), std::wstring(localName), std::wstring(qualifiedName)});
    const Key own(name->namespaceUri, name->localName, name->qualifiedName);
    return m_names.emplace(own, std::move(name)).first->second.get();
}

} // namespace KAXML

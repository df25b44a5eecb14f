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
    const auto found = m_names.find(Key(namespaceUri, localName, qualifiedName));
    if (found != m_names.end())
        return found->second.get();
    auto name = std::make_unique<const XmlName>(
        XmlName{std::wstring(namespaceUri), std::wstring(localName), std::wstring(qualifiedName)});
    const Key key(name->namespaceUri, name->localName, name->qualifiedName);
    return m_names.emplace(key, std::move(name)).first->second.get();
}

} // namespace KAXML

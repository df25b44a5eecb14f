#pragma once

#include <kaxml/platform/dom.h>

#include <array>
#include <map>
#include <memory>
#include <string_view>
#include <utility>

namespace KAXML {

/// The names of nodes that have none of their own.
struct FixedNames {
    static const XmlName& Document();
    static const XmlName& Text();
    static const XmlName& CDataSection();
    static const XmlName& Comment();
};

/// The names of one document, each kept once. All are valid: they come from a parser or were checked.
struct IXMLDOMDocument2::NameTable {
  public:
    /// Null when there is no such name yet.
    const XmlName* Find(std::wstring_view namespaceUri, std::wstring_view qualifiedName) noexcept;
    const XmlName* FindOrAdd(std::wstring_view namespaceUri, std::wstring_view qualifiedName);
    void Clear() noexcept {
        m_names.clear();
        m_recent = {};
    }

  private:
    using Key = std::pair<std::wstring_view, std::wstring_view>;

    // The keys look into the names.
    std::map<Key, std::unique_ptr<const XmlName>> m_names;
    // A tree has few names and uses each many times: where each was last, by some of its characters.
    std::array<const XmlName*, 64> m_recent{};
};

} // namespace KAXML

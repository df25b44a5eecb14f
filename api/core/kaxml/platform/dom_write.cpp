#include <kaxml/platform/dom.h>

#include <kaxml/platform/file.h>
#include <kaxml/platform/numbers.h>
#include <kaxml/platform/wide_text.h>
#include <kaxml/platform/xml_name.h>

#include <array>
#include <cstdint>

namespace KAXML {

using namespace std::string_view_literals;

namespace {

// How one kind of place writes the characters that mean something there.
enum class Place { attribute, text, verbatim };

std::string_view Escape(char32_t c, Place place) {
    if (place == Place::verbatim)
        return {};
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '\r':
        return "&#13;";
    case '>':
        return place == Place::text ? "&gt;" : "";
    case '"':
        return place == Place::attribute ? "&quot;" : "";
    case '\t':
        return place == Place::attribute ? "&#9;" : "";
    case '\n':
        return place == Place::attribute ? "&#10;" : "";
    default:
        return {};
    }
}

// The characters that are written as they stand, whatever the place.
constexpr std::array<bool, 128> kPlain = [] {
    std::array<bool, 128> plain{};
    for (std::size_t c = ' '; c < 0x7F; ++c)
        plain[c] = c != '&' && c != '<' && c != '>' && c != '"';
    return plain;
}();

bool IsPlain(wchar_t c) {
    const auto code = static_cast<std::size_t>(c);
    return code < kPlain.size() && kPlain[code];
}

bool IsCharacterData(const IXMLDOMNode& node) {
    return node.get_nodeType() == NODE_TEXT || node.get_nodeType() == NODE_CDATA_SECTION;
}

bool HasCharacterData(const IXMLDOMNode& node) {
    for (const IXMLDOMNode* child = node.get_firstChild(); child != nullptr; child = child->get_nextSibling()) {
        if (child->get_nodeType() == NODE_CDATA_SECTION || (IsCharacterData(*child) && !child->Value().empty()))
            return true;
    }
    return false;
}

bool EndsWithName(std::wstring_view name) { return name.ends_with(L"Name") || name == L"name"sv; }

// A text as part of a message about what it holds.
std::wstring Printable(std::wstring_view text) {
    std::wstring printable;
    const wchar_t* p = text.data();
    const wchar_t* const end = p + text.size();
    while (p != end) {
        const char32_t c = NextCodePoint(p, end);
        AppendCodePoint(printable, IsXmlCharacter(c) ? c : 0xFFFD);
    }
    return printable;
}

// Which of its parent's children of the same name an element is, from 1; 0 for an only one.
int PositionAmongEquals(const IXMLDOMNode& node) {
    int position = 0;
    int count = 0;
    for (const IXMLDOMNode* other = node.get_parentNode()->get_firstChild(); other != nullptr;
         other = other->get_nextSibling()) {
        count += other->get_nodeName() == node.get_nodeName() ? 1 : 0;
        position = other == &node ? count : position;
    }
    return count > 1 ? position : 0;
}

// One step of a path: the element, and what tells it from its siblings.
std::wstring PathStep(const IXMLDOMNode& node) {
    std::wstring step = L"/" + node.get_nodeName();
    if (node.get_parentNode() == nullptr || node.get_parentNode()->get_nodeType() == NODE_DOCUMENT)
        return step;
    IXMLDOMNamedNodeMap attributes = node.get_attributes();
    while (const IXMLDOMAttribute* const attribute = attributes.nextNode()) {
        if (EndsWithName(attribute->get_nodeName()))
            return step + L"[" + attribute->get_nodeName() + L"='" + Printable(attribute->get_text()) + L"']";
    }
    const int position = PositionAmongEquals(node);
    return position > 0 ? step + L"[" + FormatInt(position) + L"]" : step;
}

std::wstring PathOf(const IXMLDOMNode& node) {
    std::wstring path;
    for (const IXMLDOMNode* at = &node; at != nullptr && at->get_nodeType() != NODE_DOCUMENT; at = at->get_parentNode())
        path.insert(0, PathStep(*at));
    return path;
}

// Writes a tree in one pass. Recursion is limited by the depth that a tree may have.
class Writer {
  public:
    std::string Write(const IXMLDOMNode& document, std::size_t expectedSize) {
        m_out.reserve(expectedSize);
        m_out = "<?xml version='1.0' encoding='UTF-8'?>\n";
        for (const IXMLDOMNode* node = document.get_firstChild(); node != nullptr; node = node->get_nextSibling()) {
            WriteNode(*node, {});
            m_out += '\n';
        }
        return std::move(m_out);
    }

  private:
    // `inherited` is the default namespace in force around the node.
    void WriteNode(const IXMLDOMNode& node, std::wstring_view inherited) {
        switch (node.get_nodeType()) {
        case NODE_ELEMENT:
            WriteElement(static_cast<const IXMLDOMElement&>(node), inherited);
            break;
        case NODE_CDATA_SECTION:
            WriteCDataSection(node);
            break;
        case NODE_COMMENT:
            WriteBetween("<!--", node, "-->");
            break;
        case NODE_PROCESSING_INSTRUCTION:
            WriteInstruction(node);
            break;
        default:
            AppendCharacters(node.Value(), Place::text, node, nullptr);
        }
    }

    void WriteElement(const IXMLDOMElement& element, std::wstring_view inherited) {
        m_out += '<';
        AppendName(element.get_nodeName());
        const std::wstring_view inForce = WriteAttributes(element, inherited);
        const bool holdsText = HasCharacterData(element);
        if (!holdsText && HoldsNothing(element)) {
            m_out += "/>";
            return;
        }
        m_out += '>';
        WriteChildren(element, inForce, holdsText);
        m_out += "</";
        AppendName(element.get_nodeName());
        m_out += '>';
    }

    // Texts without characters leave no trace in a file.
    static bool HoldsNothing(const IXMLDOMElement& element) {
        const IXMLDOMNode* child = element.get_firstChild();
        while (child != nullptr && child->get_nodeType() == NODE_TEXT)
            child = child->get_nextSibling();
        return child == nullptr;
    }

    void WriteChildren(const IXMLDOMElement& element, std::wstring_view inForce, bool holdsText) {
        const bool isLaidOut = m_isLaidOut;
        m_isLaidOut = isLaidOut && !holdsText;
        ++m_level;
        for (const IXMLDOMNode* child = element.get_firstChild(); child != nullptr; child = child->get_nextSibling()) {
            if (child->get_nodeType() != NODE_TEXT)
                BreakLine();
            WriteNode(*child, inForce);
        }
        --m_level;
        BreakLine();
        m_isLaidOut = isLaidOut;
    }

    void BreakLine() {
        if (!m_isLaidOut)
            return;
        m_out += '\n';
        m_out.append(2 * m_level, ' ');
    }

    // Returns the default namespace in force inside the element.
    std::wstring_view WriteAttributes(const IXMLDOMElement& element, std::wstring_view inherited) {
        std::wstring_view inForce = inherited;
        bool isDeclared = false;
        for (const IXMLDOMAttribute& attribute : element.Attributes()) {
            WriteAttribute(element, attribute.get_nodeName(), attribute.get_text());
            if (attribute.IsDeclaration() && attribute.get_nodeName() == L"xmlns"sv) {
                inForce = attribute.get_text();
                isDeclared = true;
            }
        }
        const bool isPrefixed = element.get_baseName().size() != element.get_nodeName().size();
        const std::wstring_view uri = element.get_namespaceURI();
        if (isDeclared || isPrefixed || uri.data() == inherited.data() || uri == inherited)
            return inForce;
        WriteAttribute(element, kDefaultDeclaration, uri);
        return uri;
    }

    void WriteAttribute(const IXMLDOMElement& element, const std::wstring& name, std::wstring_view value) {
        m_out += ' ';
        AppendName(name);
        m_out += "=\"";
        AppendCharacters(value, Place::attribute, element, &name);
        m_out += '"';
    }

    void WriteBetween(std::string_view opening, const IXMLDOMNode& node, std::string_view closing) {
        m_out += opening;
        AppendCharacters(node.Value(), Place::verbatim, node, nullptr);
        m_out += closing;
    }

    void WriteInstruction(const IXMLDOMNode& node) {
        m_out += "<?";
        AppendName(node.get_nodeName());
        WriteBetween(node.Value().empty() ? "" : " ", node, "?>");
    }

    void WriteCDataSection(const IXMLDOMNode& node) {
        const std::size_t begin = m_out.size() + 9;
        WriteBetween("<![CDATA[", node, "]]>");
        const std::string_view split = "]]]]><![CDATA[>";
        for (std::size_t at = begin; (at = m_out.find("]]>", at)) + 3 < m_out.size(); at += split.size())
            m_out.replace(at, 3, split);
    }

    // Names were checked when they were given. A tree keeps each once, so its place tells it.
    void AppendName(const std::wstring& name) {
        Utf8Name& known = m_names[reinterpret_cast<std::uintptr_t>(&name) / sizeof(std::wstring) % m_names.size()];
        if (known.name != &name)
            known = {&name, Utf8FromWide(name)};
        m_out += known.utf8;
    }

    void AppendCharacters(std::wstring_view text, Place place, const IXMLDOMNode& node, const std::wstring* attribute) {
        const wchar_t* p = text.data();
        const wchar_t* const end = p + text.size();
        while (p != end) {
            std::array<char, 256> plain;
            std::size_t count = 0;
            while (p != end && count < plain.size() && IsPlain(*p))
                plain[count++] = static_cast<char>(*p++);
            if (count > 0) {
                m_out.append(plain.data(), count);
                continue;
            }
            const char32_t c = NextCodePoint(p, end);
            if (!IsXmlCharacter(c))
                Refuse(c, node, attribute);
            const std::string_view escape = Escape(c, place);
            if (escape.empty())
                AppendUtf8(m_out, c);
            else
                m_out += escape;
        }
    }

    [[noreturn]] static void Refuse(char32_t c, const IXMLDOMNode& node, const std::wstring* attribute) {
        std::wstring path;
        if (attribute != nullptr)
            path = PathOf(node) + L"/@" + *attribute;
        else if (node.get_parentNode() != nullptr)
            path = PathOf(*node.get_parentNode()) + (IsCharacterData(node) ? L"/text()" : L"/" + node.get_nodeName());
        throw _com_error(E_INVALIDARG, path + L": XML cannot hold the character " + CodePointName(c));
    }

    struct Utf8Name {
        const std::wstring* name = nullptr;
        std::string utf8;
    };

    const std::wstring kDefaultDeclaration = L"xmlns";
    std::array<Utf8Name, 64> m_names; // the last ones written
    std::string m_out;
    std::size_t m_level = 0;
    bool m_isLaidOut = true;
};

} // namespace

std::string IXMLDOMDocument2::Serialize() const {
    // Room for more than it takes nearly always: what is not used costs nothing, and to move a text that
    // outgrew its room does.
    return Writer().Write(*this, m_memory.Size() / 3);
}

HRESULT IXMLDOMDocument2::save(const std::wstring& path) const {
    ReplaceFile(path, Serialize());
    return S_OK;
}

} // namespace KAXML

#include <kaxml/platform/dom.h>

#include <kaxml/platform/dom_names.h>
#include <kaxml/platform/wide_text.h>

#include <algorithm>
#include <array>
#include <vector>

namespace KAXML {

namespace {

bool IsWhiteSpace(std::string_view utf8) noexcept {
    return std::all_of(utf8.begin(), utf8.end(),
                       [](char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; });
}

} // namespace

// Makes the tree of a document from its events.
class IXMLDOMDocument2::TreeBuilder final : public XmlEvents {
  public:
    explicit TreeBuilder(IXMLDOMDocument2& document) noexcept : m_document(document), m_current(&document) {}

    void StartElement(const XmlName& name, const XmlStartTag& tag) override {
        FlushText();
        if (m_depth == kMaxNesting)
            throw XmlRefusal{NestingRefusal()};
        IXMLDOMElement* const element = m_document.MakeElement(Own(name));
        AddAttributes(*element, tag);
        m_current = m_current->appendChild(element);
        ++m_depth;
    }

    void EndElement(const XmlName&) override {
        FlushText();
        m_current = m_current->get_parentNode();
        --m_depth;
    }

    void Text(std::string_view utf8) override { m_text += utf8; }

    void CDataSection(std::string_view utf8) override { Append(NODE_CDATA_SECTION, FixedNames::CDataSection(), utf8); }

    void Comment(std::string_view utf8) override { Append(NODE_COMMENT, FixedNames::Comment(), utf8); }

    void ProcessingInstruction(std::string_view target, std::string_view data) override {
        const std::wstring name = WideFromUtf8(target);
        Append(NODE_PROCESSING_INSTRUCTION, *m_document.Intern({}, name), data);
    }

  private:
    // The parser's names end with the parse.
    const XmlName* Own(const XmlName& name) {
        if (name.number >= m_ownNames.size())
            m_ownNames.resize(name.number + 1);
        const XmlName*& own = m_ownNames[name.number];
        if (own == nullptr)
            own = m_document.Intern(name.namespaceUri, name.qualifiedName);
        return own;
    }

    void AddAttributes(IXMLDOMElement& element, const XmlStartTag& tag) {
        const std::size_t count = tag.AttributeCount() + tag.DeclarationCount();
        if (count > 0)
            element.MakeRoomForAttributes(count);
        for (std::size_t i = 0; i < tag.AttributeCount(); ++i)
            element.AppendAttribute(Own(tag.AttributeName(i)), Wide(tag.AttributeValue(i)), false);
        for (std::size_t i = 0; i < tag.DeclarationCount(); ++i) {
            const XmlName* const name = DeclarationName(WideFromUtf8(tag.DeclarationPrefix(i)));
            element.AppendAttribute(name, Wide(tag.DeclarationUri(i)), true);
        }
    }

    const XmlName* DeclarationName(const std::wstring& prefix) {
        if (prefix.empty())
            return m_document.Intern({}, L"xmlns");
        return m_document.Intern({}, L"xmlns:" + prefix);
    }

    void Append(DOMNodeType type, const XmlName& name, std::string_view utf8) {
        FlushText();
        m_current->appendChild(m_document.MakeNode(type, &name, Wide(utf8)));
    }

    // Kept by the document.
    std::wstring_view Wide(std::string_view utf8) {
        std::array<wchar_t, 256> block;
        if (utf8.size() <= block.size() && CopyAscii(utf8.data(), utf8.size(), block.data()) == utf8.size())
            return m_document.m_memory.Copy({block.data(), utf8.size()});
        m_wide.clear();
        AppendUtf8AsWide(m_wide, utf8);
        return m_document.m_memory.Copy(m_wide);
    }

    void FlushText() {
        if (!IsWhiteSpace(m_text))
            m_current->appendChild(m_document.MakeNode(NODE_TEXT, &FixedNames::Text(), Wide(m_text)));
        m_text.clear();
    }

    IXMLDOMDocument2& m_document;
    IXMLDOMNode* m_current;
    int m_depth = 0;
    std::string m_text; // what is nothing but white space is not kept, and need not be made wide
    std::wstring m_wide;
    std::vector<const XmlName*> m_ownNames; // by the numbers of the parser's
};

bool IXMLDOMDocument2::Build(XmlInput& input, std::wstring url) {
    Clear();
    m_parseError = {};
    std::optional<XmlError> error;
    try {
        TreeBuilder builder(*this);
        error = ParseXml(input, builder);
    } catch (...) {
        Clear();
        throw;
    }
    if (!error)
        return true;
    Clear();
    m_parseError = {E_FAIL, error->line, error->column, std::move(url), std::move(error->message)};
    return false;
}

bool IXMLDOMDocument2::load(const std::wstring& path) {
    std::wstring file;
    std::wstring reason;
    std::unique_ptr<XmlInput> input;
    if (PathFromUrl(path, file, reason))
        input = OpenFile(file, reason);
    if (input != nullptr)
        return Build(*input, path);
    Clear();
    m_parseError = {E_FAIL, 0, 0, path, std::move(reason)};
    return false;
}

bool IXMLDOMDocument2::loadXML(const std::wstring& text) {
    const std::size_t null = text.find(L'\0');
    if (null == std::wstring::npos)
        return Build(*OpenWideText(text.c_str()), {});
    Clear();
    m_parseError = {E_FAIL, 0, 0, {}, L"The text holds a null character"};
    return false;
}

} // namespace KAXML

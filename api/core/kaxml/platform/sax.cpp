#include <kaxml/platform/sax.h>

#include <kaxml/platform/character_run.h>
#include <kaxml/platform/numbers.h>
#include <kaxml/platform/wide_text.h>
#include <kaxml/platform/xml_parser.h>

#include <new>
#include <string_view>
#include <vector>

namespace KAXML {

namespace {

std::wstring_view View(const wchar_t* text, int length) noexcept {
    return text != nullptr && length > 0 ? std::wstring_view(text, static_cast<std::size_t>(length))
                                         : std::wstring_view();
}

[[noreturn]] void ThrowStopped(HRESULT status) { throw _com_error(status, L"The content handler stopped the parse"); }

void RequireSuccess(HRESULT status) {
    if (status < 0)
        ThrowStopped(status);
}

// The attributes of the start tag at hand. Their names are looked up once for each tag, when the
// first value is asked for.
class Attributes final : public ISAXAttributes {
  public:
    void Use(const XmlStartTag& tag) {
        m_tag = &tag;
        m_names.clear();
    }

    HRESULT getValueFromName(const wchar_t* uri, int uriLength, const wchar_t* localName, int localNameLength,
                             std::wstring& value) override {
        const std::wstring_view wantedUri = View(uri, uriLength);
        const std::wstring_view wantedName = View(localName, localNameLength);
        LookUpNames();
        for (std::size_t i = 0; i < m_names.size(); ++i) {
            if (m_names[i]->localName == wantedName && m_names[i]->namespaceUri == wantedUri) {
                value.clear();
                AppendUtf8AsWide(value, m_tag->AttributeValue(i));
                return S_OK;
            }
        }
        return E_INVALIDARG;
    }

  private:
    void LookUpNames() {
        const std::size_t count = m_tag->AttributeCount();
        while (m_names.size() < count)
            m_names.push_back(&m_tag->AttributeName(m_names.size()));
    }

    const XmlStartTag* m_tag = nullptr;
    std::vector<const XmlName*> m_names;
};

// Hands the events of one document to a content handler.
class ContentSender final : public XmlEvents {
  public:
    ContentSender(ISAXContentHandler& handler, const bool& wantsCharacters) noexcept
        : m_handler(handler), m_wantsCharacters(wantsCharacters) {}

    void StartElement(const XmlName& name, const XmlStartTag& tag) override {
        SendCharacters();
        m_attributes.Use(tag);
        RequireSuccess(m_handler.raw_startElement(name, &m_attributes));
    }

    void EndElement(const XmlName& name) override {
        SendCharacters();
        RequireSuccess(m_handler.raw_endElement(name));
    }

    void Text(std::string_view utf8) override {
        if (m_wantsCharacters)
            m_characters.Append(utf8);
    }
    void CDataSection(std::string_view utf8) override { Text(utf8); }
    // Neither splits a run, so neither has a place in the order of the content handler's calls.
    void Comment(std::string_view) override {}
    void ProcessingInstruction(std::string_view, std::string_view) override {}

  private:
    void SendCharacters() {
        if (m_characters.IsEmpty())
            return;
        RequireSuccess(m_handler.raw_characters(m_characters.Text(), m_characters.Length()));
        m_characters.Clear();
    }

    ISAXContentHandler& m_handler;
    const bool& m_wantsCharacters;
    Attributes m_attributes;
    CharacterRun m_characters;
};

// For a parse that only checks the document.
class NoEvents final : public XmlEvents {
  public:
    void StartElement(const XmlName&, const XmlStartTag&) override {}
    void EndElement(const XmlName&) override {}
    void Text(std::string_view) override {}
    void CDataSection(std::string_view) override {}
    void Comment(std::string_view) override {}
    void ProcessingInstruction(std::string_view, std::string_view) override {}
};

class ErrorPosition final : public ISAXLocator {
  public:
    explicit ErrorPosition(const XmlError& error) noexcept : m_error(error) {}
    HRESULT getLineNumber(int* line) override { return Store(line, m_error.line); }
    HRESULT getColumnNumber(int* column) override { return Store(column, m_error.column); }

  private:
    static HRESULT Store(int* target, int value) noexcept {
        if (target == nullptr)
            return E_POINTER;
        *target = value;
        return S_OK;
    }

    const XmlError& m_error;
};

class Reader final : public ISAXXMLReader {
  public:
    HRESULT putContentHandler(ISAXContentHandler* handler) override {
        m_contentHandler = handler;
        return S_OK;
    }

    HRESULT putErrorHandler(ISAXErrorHandler* handler) override {
        m_errorHandler = handler;
        return S_OK;
    }

    void putCharactersSwitch(const bool* isWanted) override { m_charactersSwitch = isWanted; }

    HRESULT parse(const wchar_t* text) override {
        if (text == nullptr)
            throw _com_error(E_POINTER, L"There is no text to parse");
        return Parse(*OpenWideText(text), {});
    }

    HRESULT parseURL(const wchar_t* url) override {
        if (url == nullptr)
            throw _com_error(E_POINTER, L"There is no URL to parse");
        std::wstring path;
        std::wstring reason;
        if (!PathFromUrl(url, path, reason))
            throw _com_error(E_FAIL, reason, url);
        const std::unique_ptr<XmlInput> input = OpenFile(path, reason);
        if (input == nullptr)
            throw _com_error(E_FAIL, reason, path);
        return Parse(*input, path);
    }

  private:
    HRESULT Parse(XmlInput& input, const std::wstring& source) {
        // A handler may ask for other handlers during the parse; they serve the next one.
        ISAXErrorHandler* const errorHandler = m_errorHandler;
        const std::optional<XmlError> error = m_contentHandler != nullptr ? Send(input) : Check(input);
        if (error)
            Fail(*error, errorHandler, source);
        return S_OK;
    }

    std::optional<XmlError> Send(XmlInput& input) {
        ISAXContentHandler& handler = *m_contentHandler;
        RequireSuccess(handler.startDocument());
        static constexpr bool always = true;
        ContentSender sender(handler, m_charactersSwitch != nullptr ? *m_charactersSwitch : always);
        std::optional<XmlError> error = ParseXml(input, sender);
        if (!error)
            RequireSuccess(handler.endDocument());
        return error;
    }

    static std::optional<XmlError> Check(XmlInput& input) {
        NoEvents events;
        return ParseXml(input, events);
    }

    [[noreturn]] static void Fail(const XmlError& error, ISAXErrorHandler* handler, const std::wstring& source) {
        if (handler != nullptr) {
            ErrorPosition position(error);
            handler->fatalError(&position, error.message.c_str(), E_FAIL);
        }
        throw _com_error(
            E_FAIL, L"line " + FormatInt(error.line) + L", column " + FormatInt(error.column) + L": " + error.message,
            source);
    }

    ISAXContentHandler* m_contentHandler = nullptr;
    ISAXErrorHandler* m_errorHandler = nullptr;
    const bool* m_charactersSwitch = nullptr;
};

} // namespace

HRESULT CreateSAXXMLReader(std::unique_ptr<ISAXXMLReader>& reader) {
    reader.reset(new (std::nothrow) Reader);
    return reader != nullptr ? S_OK : E_OUTOFMEMORY;
}

} // namespace KAXML

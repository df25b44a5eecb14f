#include <kaxml/platform/xml_parser.h>

#include <kaxml/platform/numbers.h>
#include <kaxml/platform/wide_text.h>
#include <kaxml/platform/xml_name.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <exception>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlerror.h>
#include <new>
#include <unordered_map>
#include <vector>

namespace KAXML {

namespace {

const char* Chars(const xmlChar* text) noexcept { return reinterpret_cast<const char*>(text); }

std::string_view View(const xmlChar* text) noexcept {
    return text != nullptr ? std::string_view(Chars(text)) : std::string_view();
}

std::string_view View(const xmlChar* text, int length) noexcept {
    return std::string_view(Chars(text), static_cast<std::size_t>(length));
}

std::wstring MessageOf(const xmlError& error) {
    if (error.code == XML_ERR_CDATA_NOT_FINISHED) // libxml2 has no text for some of these
        return L"The CDATA section is not closed";
    std::wstring message = error.message != nullptr ? WideFromUtf8(error.message) : std::wstring();
    while (!message.empty() && message.back() == L'\n')
        message.pop_back();
    return message;
}

// The names of one parse. libxml2 keeps one copy of every name and namespace, so three pointers
// tell a name.
class NameTable {
  public:
    const XmlName& Find(const xmlChar* local, const xmlChar* prefix, const xmlChar* uri) {
        const Key key{local, prefix, uri};
        const Recent& recent = m_recent[SlotOf(key)];
        return recent.name != nullptr && recent.key == key ? *recent.name : Look(key);
    }
    std::size_t Size() const noexcept { return m_names.size(); }

  private:
    struct Key {
        const xmlChar* local;
        const xmlChar* prefix;
        const xmlChar* uri;
        bool operator==(const Key&) const = default;
    };

    struct Hash {
        std::size_t operator()(const Key& key) const noexcept {
            const auto number = [](const xmlChar* p) { return reinterpret_cast<std::uintptr_t>(p); };
            return (number(key.local) + 31 * number(key.prefix) + 961 * number(key.uri)) * 0x9E3779B97F4A7C15 >> 32;
        }
    };

    struct Recent {
        Key key{};
        const XmlName* name = nullptr;
    };

    // Kept out of Find, which is so compiled into its callers: 2 % of the time for wide instances.
    [[gnu::noinline]] const XmlName& Look(const Key& key) {
        auto found = m_names.find(key);
        if (found == m_names.end())
            found = m_names.emplace(key, Make(key)).first;
        m_recent[SlotOf(key)] = {key, &found->second};
        return found->second;
    }

    XmlName Make(const Key& key) const {
        XmlName name{
            WideFromUtf8(View(key.uri)), WideFromUtf8(View(key.local)), {}, static_cast<std::uint32_t>(m_names.size())};
        name.qualifiedName =
            key.prefix != nullptr ? WideFromUtf8(View(key.prefix)) + L':' + name.localName : name.localName;
        return name;
    }

    // One look at a small table finds nearly every name. Names that differ in more than the local
    // name are rare.
    static constexpr std::size_t kRecent = 256;
    static std::size_t SlotOf(const Key& key) noexcept {
        return reinterpret_cast<std::uintptr_t>(key.local) * 0x9E3779B97F4A7C15 >> 56;
    }

    std::array<Recent, kRecent> m_recent;
    std::unordered_map<Key, XmlName, Hash> m_names;
};

// The arrays in which libxml2 passes on a start tag: five pointers for an attribute, two for a
// declaration.
class StartTag final : public XmlStartTag {
  public:
    StartTag(NameTable& names, int declarationCount, const xmlChar** declarations, int attributeCount,
             const xmlChar** attributes) noexcept
        : m_names(names), m_declarationCount(static_cast<std::size_t>(declarationCount)), m_declarations(declarations),
          m_attributeCount(static_cast<std::size_t>(attributeCount)), m_attributes(attributes) {}

    std::size_t AttributeCount() const noexcept override { return m_attributeCount; }

    const XmlName& AttributeName(std::size_t index) const override {
        const xmlChar** const attribute = m_attributes + 5 * index;
        return m_names.Find(attribute[0], attribute[1], attribute[2]);
    }

    std::string_view AttributeValue(std::size_t index) const noexcept override {
        const xmlChar** const attribute = m_attributes + 5 * index;
        return std::string_view(Chars(attribute[3]), static_cast<std::size_t>(attribute[4] - attribute[3]));
    }

    std::size_t DeclarationCount() const noexcept override { return m_declarationCount; }
    std::string_view DeclarationPrefix(std::size_t index) const noexcept override {
        return View(m_declarations[2 * index]);
    }
    std::string_view DeclarationUri(std::size_t index) const noexcept override {
        return View(m_declarations[2 * index + 1]);
    }

  private:
    NameTable& m_names;
    std::size_t m_declarationCount;
    const xmlChar** m_declarations;
    std::size_t m_attributeCount;
    const xmlChar** m_attributes;
};

struct FreeContext {
    void operator()(xmlParserCtxt* context) const noexcept {
        xmlFreeDoc(context->myDoc); // a declaration behind an error can have made one
        xmlFreeParserCtxt(context);
    }
};

struct FreeBuffer {
    void operator()(xmlParserInputBuffer* buffer) const noexcept { xmlFreeParserInputBuffer(buffer); }
};

// One parse: libxml2's callbacks, which let no exception through.
class Parse {
  public:
    Parse(XmlInput& input, XmlEvents& events);
    std::optional<XmlError> Run();

  private:
    static Parse& Of(void* self) noexcept { return *static_cast<Parse*>(self); }
    static xmlSAXHandler Callbacks() noexcept;

    static int OnRead(void* self, char* buffer, int capacity) noexcept;
    static void OnError(void* self, xmlError* error) noexcept;
    static void OnDeclaration(void* self) noexcept;
    static void OnDocumentType(void* self, const xmlChar* name, const xmlChar* publicId,
                               const xmlChar* systemId) noexcept;
    static void OnStartElement(void* self, const xmlChar* local, const xmlChar* prefix, const xmlChar* uri,
                               int declarationCount, const xmlChar** declarations, int attributeCount,
                               int defaultedCount, const xmlChar** attributes) noexcept;
    static void OnEndElement(void* self, const xmlChar* local, const xmlChar* prefix, const xmlChar* uri) noexcept;
    static void OnText(void* self, const xmlChar* text, int length) noexcept;
    static void OnCData(void* self, const xmlChar* text, int length) noexcept;
    static void OnComment(void* self, const xmlChar* text) noexcept;
    static void OnInstruction(void* self, const xmlChar* target, const xmlChar* data) noexcept;

    void Open();
    template <typename Call> void Guard(Call call) noexcept;
    template <typename Call> bool Attempt(Call call) noexcept;
    template <typename Call> void Deliver(Call call) noexcept;
    void Refuse(std::wstring message);
    void Silence() noexcept;
    void TakeError(const xmlError& error);
    bool IsAtBreak() const noexcept;
    std::wstring WhatXmlCannotHold() const;
    void CheckDeclaration() const;
    void CheckEnd();
    void CheckSizes(int attributeCount) const;

    XmlInput& m_input;
    XmlEvents& m_events;
    NameTable m_names;
    std::vector<const XmlName*> m_openElements;
    std::optional<XmlError> m_error;
    std::exception_ptr m_exception;
    bool m_isStopped = false;
    bool m_isInputRead = false;
    std::unique_ptr<xmlParserCtxt, FreeContext> m_context;
};

xmlSAXHandler Parse::Callbacks() noexcept {
    xmlSAXHandler callbacks{};
    callbacks.initialized = XML_SAX2_MAGIC;
    callbacks.startDocument = OnDeclaration;
    callbacks.internalSubset = OnDocumentType;
    callbacks.startElementNs = OnStartElement;
    callbacks.endElementNs = OnEndElement;
    // With one function for both, libxml2 does not try to judge which text is ignorable.
    callbacks.characters = OnText;
    callbacks.ignorableWhitespace = OnText;
    callbacks.cdataBlock = OnCData;
    callbacks.comment = OnComment;
    callbacks.processingInstruction = OnInstruction;
    callbacks.serror = [](void* self, xmlError* error) { OnError(self, error); };
    return callbacks;
}

Parse::Parse(XmlInput& input, XmlEvents& events) : m_input(input), m_events(events), m_context(xmlNewParserCtxt()) {
    if (m_context == nullptr)
        throw std::bad_alloc();
    // Only from here on are errors reported to this object.
    *m_context->sax = Callbacks();
    m_context->userData = this;
    Open();
    // Without XML_PARSE_NOENT the ampersand of an attribute's value would arrive as a reference. There
    // are no other entities to replace: without a document type declaration none is ever declared.
    xmlCtxtUseOptions(m_context.get(), XML_PARSE_HUGE | XML_PARSE_IGNORE_ENC | XML_PARSE_NONET | XML_PARSE_NOENT);
    m_context->keepBlanks = 1;
    // With an encoding set libxml2 does not look for one. Its decoders report errors outside of any
    // parse, on standard error.
    m_context->encoding = xmlStrdup(reinterpret_cast<const xmlChar*>("UTF-8"));
    if (m_context->encoding == nullptr)
        throw std::bad_alloc();
}

void Parse::Open() {
    std::unique_ptr<xmlParserInputBuffer, FreeBuffer> buffer(
        xmlParserInputBufferCreateIO(OnRead, nullptr, this, XML_CHAR_ENCODING_UTF8));
    if (buffer == nullptr)
        throw std::bad_alloc();
    xmlParserInput* const input = xmlNewIOInputStream(m_context.get(), buffer.get(), XML_CHAR_ENCODING_UTF8);
    if (input == nullptr)
        throw std::bad_alloc();
    static_cast<void>(buffer.release());
    if (inputPush(m_context.get(), input) < 0)
        throw std::bad_alloc();
}

std::optional<XmlError> Parse::Run() {
    const int status = xmlParseDocument(m_context.get());
    if (m_exception != nullptr)
        std::rethrow_exception(m_exception);
    if (!m_error)
        CheckEnd();
    if (!m_error && (status != 0 || m_context->wellFormed == 0))
        Refuse(L"The document is not well formed");
    return std::move(m_error);
}

// libxml2 counts two entries for a declaration.
void Parse::CheckSizes(int attributeCount) const {
    const auto require = [](int count, int limit, const wchar_t* what) {
        if (count > limit)
            throw XmlRefusal{L"The document has more than " + FormatInt(limit) + what};
    };
    require(attributeCount, kMaxAttributes, L" attributes in one element");
    require(m_context->nsNr / 2, kMaxDeclarations, L" namespace declarations in force");
    require(xmlDictSize(m_context->dict), kMaxNames, L" different names");
}

// libxml2 takes a null character for the end of its input.
void Parse::CheckEnd() {
    const xmlParserInput* const input = m_context->input;
    if (input != nullptr && input->cur != nullptr && input->cur < input->end)
        Refuse(WhatXmlCannotHold());
}

// No further event gets through, and the parser soon finds its input at an end. Stopping it at
// once would free the buffer that it is reading in at many of the places that report an error.
void Parse::Silence() noexcept {
    m_isStopped = true;
    m_context->disableSAX = 1;
    m_context->wellFormed = 0;
}

void Parse::Refuse(std::wstring message) {
    const xmlParserInput* const input = m_context->input;
    m_error = XmlError{input != nullptr ? input->line : 0, input != nullptr ? input->col : 0, std::move(message)};
}

template <typename Call> void Parse::Guard(Call call) noexcept {
    try {
        call();
    } catch (...) {
        m_exception = std::current_exception();
        Silence();
    }
}

// Returns whether the call went through.
template <typename Call> bool Parse::Attempt(Call call) noexcept {
    try {
        call();
        return true;
    } catch (const XmlRefusal& refusal) {
        Guard([&] { Refuse(refusal.message); });
        Silence();
    } catch (...) {
        m_exception = std::current_exception();
        Silence();
    }
    return false;
}

template <typename Call> void Parse::Deliver(Call call) noexcept {
    if (!m_isStopped && !Attempt(call))
        xmlStopParser(m_context.get());
}

int Parse::OnRead(void* self, char* buffer, int capacity) noexcept {
    Parse& parse = Of(self);
    int count = 0;
    if (parse.m_isStopped)
        return 0;
    parse.Attempt([&] {
        // Within a start tag there is no other place to stop at. Room for attributes, five entries
        // each, doubles when it is full.
        parse.CheckSizes(parse.m_context->maxatts / 10 - 10);
        count = static_cast<int>(parse.m_input.Read(buffer, static_cast<std::size_t>(capacity)));
    });
    parse.m_isInputRead = count < capacity;
    return count;
}

void Parse::OnError(void* self, xmlError* error) noexcept {
    Parse& parse = Of(self);
    // A namespace name is any text here; that it should be a URI is advice.
    if (parse.m_isStopped || error->level < XML_ERR_ERROR || error->code == XML_WAR_NS_URI)
        return;
    parse.Guard([&] { parse.TakeError(*error); });
    parse.Silence();
}

void Parse::TakeError(const xmlError& error) {
    if (error.code == XML_ERR_NO_MEMORY)
        throw std::bad_alloc();
    if (IsAtBreak()) {
        Refuse(m_input.Failure());
        return;
    }
    std::wstring message = WhatXmlCannotHold();
    if (message.empty())
        message = MessageOf(error);
    Refuse(std::move(message));
}

// Whether the parser stands where its input broke: what is left is the poison byte, or before it a
// piece of markup that the parser could not tell without the rest.
bool Parse::IsAtBreak() const noexcept {
    const xmlParserInput* const input = m_context->input;
    if (m_input.Failure().empty() || input == nullptr || input->cur == input->end || input->end[-1] != 0xFF)
        return false;
    std::string_view rest(Chars(input->cur), static_cast<std::size_t>(input->end - input->cur - 1));
    if (!rest.empty() && rest.front() == '<')
        rest.remove_prefix(1);
    for (const std::string_view markup :
         {"![CDATA[", "!--", "!DOCTYPE", "-->", "/>", "version", "encoding", "standalone", "?>"}) {
        if (markup.starts_with(rest))
            return true;
    }
    return false;
}

// Tells of bytes or a character at which the parser stands and that no document may hold; empty
// without them. What the parser itself says of them depends on what it was looking for.
std::wstring Parse::WhatXmlCannotHold() const {
    const xmlParserInput* const input = m_context->input;
    if (input == nullptr || input->cur == input->end)
        return {};
    const xmlChar* at = input->cur;
    if (Utf8SequenceLength(at, input->end) == 0) {
        const bool isWhole = m_isInputRead || input->end - at >= 4;
        return isWhole ? L"The bytes are no text in the encoding 'UTF-8'" : L"";
    }
    const char32_t c = NextUtf8CodePoint(at, input->end);
    return IsXmlCharacter(c) ? std::wstring() : L"XML cannot hold the character " + CodePointName(c);
}

// Two malformed kinds of XML declaration pass libxml2. All else about it has been judged by now, and
// the input begins with it.
void Parse::CheckDeclaration() const {
    if (View(m_context->version).ends_with('.'))
        throw XmlRefusal{L"The XML declaration's version has no digit behind its full stop"};
    const xmlParserInput& input = *m_context->input;
    const std::string_view text = View(input.base, static_cast<int>(input.cur - input.base));
    const char* const quotes = "'\"";
    for (std::size_t at = text.find_first_of(quotes); at != text.npos; at = text.find_first_of(quotes, at + 1)) {
        at = text.find(text[at], at + 1);
        if (text.find_first_of("? \t\n\r", at + 1) != at + 1)
            throw XmlRefusal{L"The XML declaration lacks a space between two of its parts"};
    }
}

void Parse::OnDeclaration(void* self) noexcept {
    Parse& parse = Of(self);
    parse.Deliver([&] { parse.CheckDeclaration(); });
}

void Parse::OnDocumentType(void* self, const xmlChar*, const xmlChar*, const xmlChar*) noexcept {
    Of(self).Deliver([] { throw XmlRefusal{L"A document type declaration is not allowed"}; });
}

void Parse::OnStartElement(void* self, const xmlChar* local, const xmlChar* prefix, const xmlChar* uri,
                           int declarationCount, const xmlChar** declarations, int attributeCount, int,
                           const xmlChar** attributes) noexcept {
    Parse& parse = Of(self);
    parse.Deliver([&] {
        const std::size_t knownNames = parse.m_names.Size();
        const XmlName& name = parse.m_names.Find(local, prefix, uri);
        if (attributeCount > 0 || declarationCount > 0 || parse.m_names.Size() != knownNames)
            parse.CheckSizes(attributeCount);
        parse.m_openElements.push_back(&name);
        const StartTag tag(parse.m_names, declarationCount, declarations, attributeCount, attributes);
        parse.m_events.StartElement(name, tag);
    });
}

void Parse::OnEndElement(void* self, const xmlChar*, const xmlChar*, const xmlChar*) noexcept {
    Parse& parse = Of(self);
    parse.Deliver([&] {
        const XmlName* const name = parse.m_openElements.back();
        parse.m_openElements.pop_back();
        parse.m_events.EndElement(*name);
    });
}

void Parse::OnText(void* self, const xmlChar* text, int length) noexcept {
    Parse& parse = Of(self);
    parse.Deliver([&] { parse.m_events.Text(View(text, length)); });
}

void Parse::OnCData(void* self, const xmlChar* text, int length) noexcept {
    Parse& parse = Of(self);
    parse.Deliver([&] { parse.m_events.CDataSection(View(text, length)); });
}

void Parse::OnComment(void* self, const xmlChar* text) noexcept {
    Parse& parse = Of(self);
    parse.Deliver([&] { parse.m_events.Comment(View(text)); });
}

void Parse::OnInstruction(void* self, const xmlChar* target, const xmlChar* data) noexcept {
    Parse& parse = Of(self);
    parse.Deliver([&] { parse.m_events.ProcessingInstruction(View(target), View(data)); });
}

} // namespace

std::optional<XmlError> ParseXml(XmlInput& input, XmlEvents& events) {
    static const bool isReady = (xmlInitParser(), true);
    static_cast<void>(isReady);
    return Parse(input, events).Run();
}

std::wstring NestingRefusal() { return L"The document is nested deeper than " + FormatInt(kMaxNesting) + L" levels"; }

} // namespace KAXML

#include <kaxml/kaxml/reader/content_handler.h>

#include <kaxml/kaxml/core/errors.h>
#include <kaxml/platform/xml_parser.h>

namespace KAXML {

namespace {

// Blanks belong to a value; what only lays out the document does not.
bool IsTrimmed(wchar_t c) noexcept { return c == L'\t' || c == L'\n' || c == L'\r'; }

ElementName MakeName(const wchar_t* uri, int uriLength, const wchar_t* localName, int localNameLength,
                     const wchar_t* qName, int qNameLength) noexcept {
    return {{uri, static_cast<std::size_t>(uriLength)},
            {localName, static_cast<std::size_t>(localNameLength)},
            {qName, static_cast<std::size_t>(qNameLength)}};
}

} // namespace

CKAXMLSAXContentHandler::CKAXMLSAXContentHandler(CKaSchema* schema, void* context, const ParseCallbacks& callbacks,
                                                 unsigned int parseFlags)
    : m_parseFlags(parseFlags), m_pKaSchema(schema), m_callbacks(callbacks), m_context(context) {
    if (callbacks.parsedInstance == nullptr)
        throw KAXMLInvalidArgument(L"parsedKaInstanceCallback cannot be NULL");
    if (callbacks.parsedRelationship == nullptr)
        throw KAXMLInvalidArgument(L"parsedKaRelationshipCallback cannot be NULL");
    if (schema == nullptr)
        throw KAXMLInvalidArgument(L"Passed NULL pKaSchema into CKAXMLSAXContentHandler constructor");
    m_pStateStack = std::make_unique<StateStack>();
}

CKAXMLSAXContentHandler::~CKAXMLSAXContentHandler() = default;

void CKAXMLSAXContentHandler::ThrowNoStack() { throw KAXMLLogicError(L"m_pStateStack is NULL"); }

void CKAXMLSAXContentHandler::ThrowNoTop(const wchar_t* operation) {
    throw KAXMLRuntimeError(std::wstring(L"GetStateStack().top() returned NULL in CKAXMLSAXContentHandler::") +
                            operation);
}

HRESULT CKAXMLSAXContentHandler::raw_startElement(const wchar_t* uri, int uriLength, const wchar_t* localName,
                                                  int localNameLength, const wchar_t* qName, int qNameLength,
                                                  ISAXAttributes* attributeList) {
    Top(L"raw_startElement");
    XMLAttributes attributes(attributeList);
    const ElementName name = MakeName(uri, uriLength, localName, localNameLength, qName, qNameLength);
    for (;;) {
        StateHandler& top = Top(L"raw_startElement");
        std::unique_ptr<StateHandler> next;
        const START_ACTION action = top.StartElement(name, attributes, next);
        switch (action) {
        case STATUSQUO:
            if (next)
                throw KAXMLLogicError(L"StartElement should never return a pNextHandler if START_ACTION is STATUSQUO");
            return S_OK;
        case PUSH:
        case PUSH_UNHANDLED:
            if (!next)
                throw KAXMLLogicError(
                    L"StartElement must return a pNextHandler if START_ACTION is PUSH_UNHANDLED or PUSH");
            GetStateStack().Push(std::move(next));
            if (action == PUSH)
                return S_OK;
            break;
        default:
            throw KAXMLLogicError(L"StartElement returned an unrecognized START_ACTION");
        }
    }
}

HRESULT CKAXMLSAXContentHandler::raw_endElement(const wchar_t* uri, int uriLength, const wchar_t* localName,
                                                int localNameLength, const wchar_t* qName, int qNameLength) {
    const ElementName name = MakeName(uri, uriLength, localName, localNameLength, qName, qNameLength);
    for (;;) {
        StateHandler& top = Top(L"raw_endElement");
        std::unique_ptr<StateHandler> next;
        const END_ACTION action = top.EndElement(name, next);
        switch (action) {
        case NOCHANGE:
            if (next)
                throw KAXMLLogicError(L"EndElement should never return a pNextHandler if END_ACTION is NOCHANGE");
            return S_OK;
        case POP:
        case POP_UNHANDLED:
            if (next)
                throw KAXMLLogicError(
                    L"EndElement should never return a pNextHandler if END_ACTION is POP or POP_UNHANDLED");
            GetStateStack().Pop();
            if (action == POP)
                return S_OK;
            break;
        case REPLACE:
            GetStateStack().Pop();
            GetStateStack().Push(std::move(next));
            return S_OK;
        default:
            throw KAXMLLogicError(L"EndElement returned an unrecognized END_ACTION");
        }
    }
}

HRESULT CKAXMLSAXContentHandler::raw_characters(const wchar_t* text, std::size_t length) {
    while (length > 0 && IsTrimmed(text[length - 1]))
        --length;
    if (length == 0)
        return S_OK;
    while (IsTrimmed(*text)) {
        ++text;
        --length;
    }
    Top(L"raw_characters").Characters(text, length);
    return S_OK;
}

void CKAXMLSAXContentHandler::EnterStruct() {
    if (m_openStructs == kMaxNesting)
        throw XmlRefusal{NestingRefusal()};
    ++m_openStructs;
}

} // namespace KAXML

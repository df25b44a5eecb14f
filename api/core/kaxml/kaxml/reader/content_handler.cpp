#include <kaxml/kaxml/reader/content_handler.h>

#include <kaxml/kaxml/core/errors.h>
#include <kaxml/platform/xml_parser.h>

namespace KAXML {

namespace {

// Blanks belong to a value; what only lays out the document does not.
bool IsTrimmed(wchar_t c) noexcept { return c == L'\t' || c == L'\n' || c == L'\r'; }

// An answer that does not go with the next handler that came with it, or is none.
[[noreturn]] void RefuseAnswer(START_ACTION action) {
    if (action == STATUSQUO)
        throw KAXMLLogicError(L"StartElement should never return a pNextHandler if START_ACTION is STATUSQUO");
    if (action == PUSH || action == PUSH_UNHANDLED)
        throw KAXMLLogicError(L"StartElement must return a pNextHandler if START_ACTION is PUSH_UNHANDLED or PUSH");
    throw KAXMLLogicError(L"StartElement returned an unrecognized START_ACTION");
}

[[noreturn]] void RefuseAnswer(END_ACTION action) {
    if (action == NOCHANGE)
        throw KAXMLLogicError(L"EndElement should never return a pNextHandler if END_ACTION is NOCHANGE");
    if (action == POP || action == POP_UNHANDLED)
        throw KAXMLLogicError(L"EndElement should never return a pNextHandler if END_ACTION is POP or POP_UNHANDLED");
    throw KAXMLLogicError(L"EndElement returned an unrecognized END_ACTION");
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

HRESULT CKAXMLSAXContentHandler::raw_startElement(const XmlName& name, ISAXAttributes* attributeList) {
    StateHandler& top = Top(L"raw_startElement");
    XMLAttributes attributes(attributeList);
    std::unique_ptr<StateHandler> next;
    const START_ACTION action = top.StartElement(name, attributes, next);
    const bool stays = action == STATUSQUO && !next;
    m_wantsCharacters = (stays ? top : Obey(action, next, name, attributes)).WantsCharacters();
    return S_OK;
}

// Changes the stack as a start tag was answered, and returns the handler then on top.
StateHandler& CKAXMLSAXContentHandler::Obey(START_ACTION action, std::unique_ptr<StateHandler>& next,
                                            const XmlName& name, XMLAttributes& attributes) {
    StateHandler* top = m_pStateStack->Top();
    while (action == PUSH_UNHANDLED && next) {
        top = Push(std::move(next));
        action = top->StartElement(name, attributes, next);
    }
    if (action == PUSH && next)
        top = Push(std::move(next));
    else if (action != STATUSQUO || next)
        RefuseAnswer(action);
    return *top;
}

HRESULT CKAXMLSAXContentHandler::raw_endElement(const XmlName& name) {
    StateHandler& top = Top(L"raw_endElement");
    std::unique_ptr<StateHandler> next;
    const END_ACTION action = top.EndElement(name, next);
    const StateHandler* const topNow = action == NOCHANGE && !next ? &top : Obey(action, next, name);
    m_wantsCharacters = topNow != nullptr && topNow->WantsCharacters();
    return S_OK;
}

// The same for an end tag. There may be no handler left, or none may have been given.
StateHandler* CKAXMLSAXContentHandler::Obey(END_ACTION action, std::unique_ptr<StateHandler>& next,
                                            const XmlName& name) {
    while (action == POP_UNHANDLED && !next) {
        m_pStateStack->Pop();
        action = Top(L"raw_endElement").EndElement(name, next);
    }
    if (action == REPLACE || (action == POP && !next)) {
        m_pStateStack->Pop();
        if (action == REPLACE)
            return Push(std::move(next));
    } else if (action != NOCHANGE || next) {
        RefuseAnswer(action);
    }
    return m_pStateStack->Top();
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

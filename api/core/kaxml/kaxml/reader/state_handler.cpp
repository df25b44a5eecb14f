#include <kaxml/kaxml/reader/state_handler.h>

#include <kaxml/kaxml/core/errors.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/reader/content_handler.h>

namespace KAXML {

namespace {

// Ordinary names and values fit without the strings growing.
constexpr std::size_t kReservedCharacters = 128;

void Empty(std::wstring& text) {
    text.clear();
    if (text.capacity() < kReservedCharacters)
        text.reserve(kReservedCharacters);
}

} // namespace

StateHandler::StateHandler(StateHandler* parent, const wchar_t* elementName)
    : m_pParent(parent), m_pSaxHandler(parent == nullptr ? nullptr : parent->m_pSaxHandler) {
    if (m_pSaxHandler != nullptr) {
        m_pSaxHandler->Strings().Take(m_chars);
        m_pSaxHandler->Strings().Take(m_elementName);
    }
    Reset();
    m_elementName = elementName;
}

StateHandler::~StateHandler() {
    if (m_pSaxHandler != nullptr) {
        m_pSaxHandler->Strings().GiveBack(m_elementName);
        m_pSaxHandler->Strings().GiveBack(m_chars);
    }
}

std::wstring StateHandler::PathSegment() const { return L"." + m_elementName; }

START_ACTION StateHandler::StartElement(const ElementName& name, XMLAttributes&, std::unique_ptr<StateHandler>&) {
    TrackStart(name.localName);
    return STATUSQUO;
}

void StateHandler::Characters(const wchar_t*, std::size_t) {}

END_ACTION StateHandler::EndElement(const ElementName& name, std::unique_ptr<StateHandler>&) {
    return TrackEnd(name.localName);
}

void StateHandler::Reset() {
    Empty(m_chars);
    Empty(m_elementName);
    m_depth = 0;
}

CKAXMLSAXContentHandler& StateHandler::GetSaxHandler() const {
    if (m_pSaxHandler == nullptr)
        throw KAXMLRuntimeError(L"Asking for m_pSaxHandler when it is NULL");
    return *m_pSaxHandler;
}

void StateHandler::TrackStart(std::wstring_view localName) {
    ++m_depth;
    if (m_elementName.empty())
        m_elementName = localName;
    else if (m_depth == 1 && m_elementName != localName)
        throw KAXMLFormatError(FormatPathMessage(L"Unexpected element."));
}

END_ACTION StateHandler::TrackEnd(std::wstring_view localName) {
    --m_depth;
    if (m_depth < 0)
        return POP_UNHANDLED;
    if (m_depth > 0)
        return NOCHANGE;
    if (m_elementName != localName)
        throw KAXMLRuntimeError(L"EndElement called on unexpected element");
    return POP;
}

std::wstring StateHandler::FormatPathMessage(const std::wstring& message) const {
    std::wstring path;
    for (const StateHandler* handler = this; handler != nullptr; handler = handler->m_pParent)
        path.insert(0, handler->PathSegment());
    return Concat(L"Error at (", path, L"): ", message);
}

IgnoringElement::IgnoringElement(StateHandler* parent) : StateHandler(parent, L"") {}

StateStack::~StateStack() {
    // From the top down: a handler may refer to those below it.
    while (!m_handlers.empty())
        m_handlers.pop_back();
}

} // namespace KAXML

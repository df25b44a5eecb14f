#include <kaxml/kaxml/reader/state_handler.h>

#include <kaxml/kaxml/core/errors.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/reader/content_handler.h>

namespace KAXML {

StateHandler::StateHandler(StateHandler* parent, const wchar_t* elementName)
    : m_pParent(parent), m_pSaxHandler(parent == nullptr ? nullptr : parent->m_pSaxHandler),
      m_elementName(elementName) {}

std::wstring StateHandler::PathSegment() const { return Concat(L".", m_elementName); }

START_ACTION StateHandler::StartElement(const XmlName& name, XMLAttributes&, std::unique_ptr<StateHandler>&) {
    TrackStart(name.localName);
    return STATUSQUO;
}

void StateHandler::Characters(const wchar_t*, std::size_t) {}

END_ACTION StateHandler::EndElement(const XmlName& name, std::unique_ptr<StateHandler>&) {
    return TrackEnd(name.localName);
}

CKAXMLSAXContentHandler& StateHandler::GetSaxHandler() const {
    if (m_pSaxHandler == nullptr)
        throw KAXMLRuntimeError(L"Asking for m_pSaxHandler when it is NULL");
    return *m_pSaxHandler;
}

void StateHandler::ThrowUnexpectedStart() const { throw KAXMLFormatError(FormatPathMessage(L"Unexpected element.")); }

void StateHandler::ThrowUnexpectedEnd() { throw KAXMLRuntimeError(L"EndElement called on unexpected element"); }

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

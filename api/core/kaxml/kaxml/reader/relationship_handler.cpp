#include <kaxml/kaschemaxml/instance/instance.h>
#include <kaxml/kaxml/core/errors.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/reader/instance_handlers.h>

namespace KAXML {

namespace {

enum State { expectsSource = 1, expectsTarget = 2, done = 3 };

KaRelationshipInstance* RequireRelationship(KaRelationshipInstance* relationship) {
    if (relationship == nullptr)
        throw KAXMLInvalidArgument(L"Passed NULL pRelationship into RelationshipHandler constructor");
    return relationship;
}

// The "href" of an end, which must be the element expected.
std::wstring ReadHref(std::wstring_view localName, const wchar_t* expected, XMLAttributes& attributes) {
    if (localName != expected)
        throw KAXMLFormatError(
            Concat(L"Found unexpected element '", localName, L"' while looking for '", expected, L"'"));
    std::wstring href;
    if (attributes.GetValue(L"href", href) == 0)
        throw KAXMLFormatError(Concat(L"href not set on ", expected, L" element"));
    return href;
}

} // namespace

RelationshipHandler::RelationshipHandler(StateHandler* parent, KaRelationshipInstance* relationship)
    : StateHandler(parent, L""), m_state(expectsSource), m_pRelationship(RequireRelationship(relationship)) {}

START_ACTION RelationshipHandler::StartElement(const XmlName& name, XMLAttributes& attributes,
                                               std::unique_ptr<StateHandler>&) {
    if (m_state == expectsSource)
        m_pRelationship->SetSourceID(ReadHref(name.localName, L"KaSource", attributes).c_str());
    else if (m_state == expectsTarget)
        m_pRelationship->SetTargetID(ReadHref(name.localName, L"KaTarget", attributes).c_str());
    else
        throw KAXMLLogicError(L"RelationshipHandler::StartElement called with an invalid state");
    return STATUSQUO;
}

END_ACTION RelationshipHandler::EndElement(const XmlName&, std::unique_ptr<StateHandler>& nextHandler) {
    if (m_state == expectsSource) {
        m_state = expectsTarget;
        return NOCHANGE;
    }
    if (m_state != expectsTarget)
        throw KAXMLLogicError(L"RelationshipHandler::EndElement called with an invalid state");
    m_state = done;
    // The successor's parent is this handler's: this one is gone in a moment.
    nextHandler = std::make_unique<PropertiesHandler>(m_pParent, m_pRelationship);
    return REPLACE;
}

} // namespace KAXML

#include <kaxml/kaxml/reader/instance_handlers.h>

#include <kaxml/kaschemaxml/instance/instance.h>
#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaxml/core/errors.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/core/identifiers.h>
#include <kaxml/kaxml/core/log_message.h>
#include <kaxml/kaxml/reader/content_handler.h>

namespace KAXML {

namespace {

constexpr const wchar_t* kRootElement = L"KaInstanceXML";
constexpr std::wstring_view kProjectElement = L"Project";

// Where an instance element's id may stand; the first present wins.
constexpr const wchar_t* kIdAttributes[] = {L"id", L"instanceID", L"instanceId"};

} // namespace

KaInstanceXMLHandler::KaInstanceXMLHandler(CKAXMLSAXContentHandler* saxHandler) : StateHandler(nullptr, kRootElement) {
    if (saxHandler == nullptr)
        throw KAXMLInvalidArgument(L"Passed NULL CKAXMLSAXContentHandler into KaInstanceXMLHandler");
    m_pSaxHandler = saxHandler;
}

START_ACTION KaInstanceXMLHandler::StartElement(const XmlName& name, XMLAttributes& attributes,
                                                std::unique_ptr<StateHandler>& nextHandler) {
    if (name.localName != kRootElement) {
        nextHandler = std::make_unique<IgnoringElement>(this);
        return PUSH_UNHANDLED;
    }
    TrackStart(name.localName);
    BeginParse(name.namespaceUri, attributes);
    nextHandler = std::make_unique<InstanceHandler>(this);
    return PUSH;
}

void KaInstanceXMLHandler::BeginParse(std::wstring_view namespaceUri, XMLAttributes& attributes) {
    if (namespaceUri != KAXML_NAMESPACE_URI)
        throw KAXMLFormatError(Concat(L"Imported KaInstanceXML is unrecognized version. Expected version '",
                                      KAXML_NAMESPACE_URI, L"' but got version '", namespaceUri, L"'"));
    std::wstring scope;
    attributes.GetValue(L"scope", scope);
    const CKAXMLSAXContentHandler& sax = GetSaxHandler();
    const kaInstanceXMLParseBegin begin = sax.Callbacks().parseBegin;
    if (begin != nullptr && begin(sax.GetKaSchema(), sax.Context(), scope.c_str(), &attributes) != 0)
        throw KAXMLRuntimeError(L"Error during kaInstanceXMLParseBegin callback");
}

END_ACTION KaInstanceXMLHandler::EndElement(const XmlName& name, std::unique_ptr<StateHandler>&) {
    TrackEnd(name.localName);
    const CKAXMLSAXContentHandler& sax = GetSaxHandler();
    const kaInstanceXMLParseEnd end = sax.Callbacks().parseEnd;
    if (end != nullptr && end(sax.GetKaSchema(), sax.Context()) != 0)
        throw KAXMLRuntimeError(L"Error during kaInstanceXMLParseEnd callback");
    return POP;
}

InstanceHandler::InstanceHandler(StateHandler* parent) : StateHandler(parent, L"") {}
InstanceHandler::~InstanceHandler() = default;

START_ACTION InstanceHandler::StartElement(const XmlName& name, XMLAttributes& attributes,
                                           std::unique_ptr<StateHandler>& nextHandler) {
    IKaInstanceFactory* const factory = GetSaxHandler().GetKaInstanceFactory();
    if (factory == nullptr)
        throw KAXMLRuntimeError(L"CKAXMLSAXContentHandler has NULL m_pKaInstanceFactory");
    if (name.localName == kProjectElement) {
        NotifyProject(name.localName, &attributes, true);
        return STATUSQUO;
    }
    // An older relationship without its ends may have been left behind unfinished.
    m_isRelationship = 0;
    m_pKaInstance.reset(
        factory->CreateKaInstance(name.namespaceUri.c_str(), name.localName.c_str(), &m_isRelationship));
    if (!m_pKaInstance)
        return StartUnknown(name.localName, nextHandler);
    TrackStart(name.localName);
    SetId(name.localName, attributes);
    if (m_isRelationship != 0 && HandleKAXML20Relationship(attributes) == 0)
        nextHandler = std::make_unique<RelationshipHandler>(this, AsRelationship());
    else
        nextHandler = std::make_unique<PropertiesHandler>(this, m_pKaInstance.get());
    return PUSH;
}

START_ACTION InstanceHandler::StartUnknown(const std::wstring& localName, std::unique_ptr<StateHandler>& nextHandler) {
    // A factory that knows nothing may still have touched the flag.
    m_isRelationship = 0;
    if (!GetSaxHandler().HasFlag(SKIP_UNRECOGNIZED_CLASSES))
        throw KAXMLRuntimeError(Concat(L"Unrecognized KaClass: ", localName));
    LogFormatted(LOG_INFO, L"Skipping unrecognized KaClass <%s>", {localName});
    nextHandler = std::make_unique<IgnoringElement>(this);
    return PUSH_UNHANDLED;
}

void InstanceHandler::SetId(const std::wstring& localName, XMLAttributes& attributes) {
    std::wstring& id = m_pKaInstance->InstanceID();
    for (const wchar_t* const name : kIdAttributes)
        if (attributes.GetValue(name, id) != 0)
            return;
    id = Concat(localName, L"-", CreateGuid());
}

int InstanceHandler::HandleKAXML20Relationship(XMLAttributes& attributes) {
    std::wstring sourceId;
    std::wstring targetId;
    if (attributes.GetValue(L"sourceInstanceID", sourceId) == 0 ||
        attributes.GetValue(L"targetInstanceID", targetId) == 0)
        return 0;
    KaRelationshipInstance* const relationship = AsRelationship();
    if (relationship == nullptr)
        throw KAXMLLogicError(L"Called HandleKAXML20Relationship on an instance that was not a relationship!");
    relationship->SetSourceID(sourceId.c_str());
    relationship->SetTargetID(targetId.c_str());
    return 1;
}

KaRelationshipInstance* InstanceHandler::AsRelationship() const {
    return dynamic_cast<KaRelationshipInstance*>(m_pKaInstance.get());
}

void InstanceHandler::NotifyProject(const std::wstring& localName, XMLAttributes* attributes, bool isStart) {
    const CKAXMLSAXContentHandler& sax = GetSaxHandler();
    const projectElementCallback project = sax.Callbacks().projectElement;
    if (project != nullptr && project(sax.GetKaSchema(), sax.Context(), isStart, localName.c_str(), attributes) != 0)
        throw KAXMLRuntimeError(Concat(L"Error while parsing element <", localName, L">."));
}

END_ACTION InstanceHandler::EndElement(const XmlName& name, std::unique_ptr<StateHandler>&) {
    if (name.localName == kProjectElement) {
        NotifyProject(name.localName, nullptr, false);
        return NOCHANGE;
    }
    if (TrackEnd(name.localName) == POP_UNHANDLED)
        return POP_UNHANDLED;
    const int result = HandOver();
    GetSaxHandler().IncrementImportedCount();
    GetSaxHandler().Stock().TakeBack(*m_pKaInstance);
    m_pKaInstance.reset();
    m_isRelationship = 0;
    Reset();
    if (result != 0)
        throw KAXMLRuntimeError(L"Error while processing parsed instance");
    return NOCHANGE;
}

int InstanceHandler::HandOver() {
    if (!m_pKaInstance)
        throw KAXMLRuntimeError(FormatPathMessage(L"NULL m_pKaInstance in EndElement"));
    const CKAXMLSAXContentHandler& sax = GetSaxHandler();
    if (m_isRelationship == 0)
        return sax.Callbacks().parsedInstance(sax.GetKaSchema(), sax.Context(), m_pKaInstance.get());
    KaRelationshipInstance* const relationship = AsRelationship();
    if (relationship == nullptr)
        throw KAXMLRuntimeError(FormatPathMessage(L"Failed to cast m_pKaInstance to an KaRelationshipInstance *"));
    return sax.Callbacks().parsedRelationship(sax.GetKaSchema(), sax.Context(), relationship);
}

} // namespace KAXML

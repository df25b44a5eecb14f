#include <kaxml/kaschemaxml/instance/instance.h>
#include <kaxml/kaschemaxml/instance/recycled_values.h>
#include <kaxml/kaschemaxml/schema/class.h>
#include <kaxml/kaschemaxml/schema/property.h>
#include <kaxml/kaxml/core/errors.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/core/log_message.h>
#include <kaxml/kaxml/reader/content_handler.h>
#include <kaxml/kaxml/reader/instance_handlers.h>

namespace KAXML {

namespace {

template <typename T> T* Require(T* pointer, const wchar_t* message) {
    if (pointer == nullptr)
        throw KAXMLInvalidArgument(message);
    return pointer;
}

CKaInstance* RequireClass(CKaInstance* instance) {
    if (Require(instance, L"Passed NULL pKaInstance into PropertiesHandler constructor")->GetKaClass() == nullptr)
        throw KAXMLRuntimeError(L"KaInstance with no KaClass was passed to PropertiesHandler constructor!");
    return instance;
}

// Hands a new value to an instance, or a new member to an array, and returns it.
template <typename Value> Value* AddTo(InstanceFiller& filler, std::unique_ptr<Value> value) {
    Value* const added = value.get();
    filler.AddValue(std::move(value));
    return added;
}

template <typename Value> Value* AddTo(KaArrayValue& array, std::unique_ptr<Value> value) {
    array.PushBack(value.get());
    return value.release();
}

} // namespace

PropertiesHandler::PropertiesHandler(StateHandler* parent, CKaInstance* instance)
    : StateHandler(parent, L""), m_pKaInstance(RequireClass(instance)),
      m_filler(instance, GetSaxHandler().Properties(), GetSaxHandler().Stock()) {
    m_collectsCharacters = true;
    m_pSaxHandler->Strings().Take(m_chars);
}

PropertiesHandler::~PropertiesHandler() { m_pSaxHandler->Strings().GiveBack(m_chars); }

START_ACTION PropertiesHandler::StartElement(const XmlName& name, XMLAttributes&,
                                             std::unique_ptr<StateHandler>& nextHandler) {
    Reset();
    m_isPrimitive = false;
    m_pProperty = m_filler.FindProperty(name);
    if (m_pProperty == nullptr)
        return StartUnknown(name.localName, nextHandler);
    if (m_pProperty->IsArray() != 0) {
        nextHandler =
            std::make_unique<ArrayHandler>(this, AddTo(m_filler, std::make_unique<KaArrayValue>(m_pProperty)));
        TrackStart(name.localName);
        return PUSH;
    }
    if (m_pProperty->IsStruct() != 0) {
        nextHandler =
            std::make_unique<StructHandler>(this, AddTo(m_filler, GetSaxHandler().Structs().Make(m_pProperty)));
        return PUSH_UNHANDLED;
    }
    m_isPrimitive = true;
    TrackStart(name.localName);
    return STATUSQUO;
}

START_ACTION PropertiesHandler::StartUnknown(const std::wstring& localName,
                                             std::unique_ptr<StateHandler>& nextHandler) {
    if (!GetSaxHandler().HasFlag(IGNORE_UNRECOGNIZED_PROPERTIES))
        throw KAXMLFormatError(Concat(L"Unrecognized KaProperty ", localName, L" found in instance of KaClass ",
                                      m_pKaInstance->GetKaClass()->TypeName(), L"."));
    LogFormatted(LOG_TRACE, L"Ignoring unrecognized KaProperty <%s>", {localName});
    nextHandler = std::make_unique<IgnoringElement>(this);
    return PUSH_UNHANDLED;
}

void PropertiesHandler::Characters(const wchar_t* text, std::size_t length) {
    if (m_depth > 0) // what stands between the elements is of no use
        m_chars.append(text, length);
}

END_ACTION PropertiesHandler::EndElement(const XmlName& name, std::unique_ptr<StateHandler>&) {
    if (TrackEnd(name.localName) == POP_UNHANDLED)
        return POP_UNHANDLED;
    if (m_isPrimitive)
        m_filler.SetText(name.localName, m_chars);
    m_isPrimitive = false;
    Reset();
    return NOCHANGE;
}

ArrayHandler::ArrayHandler(StateHandler* parent, KaArrayValue* arrayValue)
    : StateHandler(parent, L""),
      m_memberElementName(
          Require(arrayValue, L"Passed NULL pArrayValue into ArrayHandler constructor")->GetProperty()->TypeName()),
      m_pProperty(arrayValue->GetProperty()), m_membersAreStructs(m_pProperty->IsStruct()), m_pArrayValue(arrayValue) {
    m_collectsCharacters = true;
    GetSaxHandler().Strings().Take(m_memberText);
}

ArrayHandler::~ArrayHandler() { m_pSaxHandler->Strings().GiveBack(m_memberText); }

START_ACTION ArrayHandler::StartElement(const XmlName& name, XMLAttributes&,
                                        std::unique_ptr<StateHandler>& nextHandler) {
    if (!IsSameName(m_memberElementName, name.localName))
        throw KAXMLFormatError(L"Encountered array element with name not equal to the property's type name");
    m_memberElementName = name.localName; // the same text, told by its place from now on
    m_memberText.clear();
    if (m_membersAreStructs != 0) {
        KaStructValue* const member = AddTo(*m_pArrayValue, GetSaxHandler().Structs().Make(m_pProperty));
        nextHandler = std::make_unique<StructHandler>(this, member);
        return PUSH_UNHANDLED;
    }
    TrackStart(name.localName);
    return STATUSQUO;
}

void ArrayHandler::Characters(const wchar_t* text, std::size_t length) { m_memberText.append(text, length); }

END_ACTION ArrayHandler::EndElement(const XmlName& name, std::unique_ptr<StateHandler>&) {
    if (TrackEnd(name.localName) == POP_UNHANDLED)
        return POP_UNHANDLED;
    if (m_membersAreStructs != 0)
        throw KAXMLLogicError(L"The StructHandler should have gotten the EndElement message, not us");
    std::unique_ptr<CKaValue> member = m_pSaxHandler->Stock().Get(m_pProperty);
    member->SetValue(std::move(m_memberText));
    AddTo(*m_pArrayValue, std::move(member));
    return NOCHANGE;
}

StructHandler::StructHandler(StateHandler* parent, KaStructValue* structValue)
    : StateHandler(parent, L""),
      m_pKaInstance(Require(structValue, L"Passed NULL pStructValue to StructHandler constructor")->GetValue()) {
    GetSaxHandler().EnterStruct();
}

StructHandler::~StructHandler() { m_pSaxHandler->LeaveStruct(); }

START_ACTION StructHandler::StartElement(const XmlName& name, XMLAttributes&,
                                         std::unique_ptr<StateHandler>& nextHandler) {
    TrackStart(name.localName);
    nextHandler = std::make_unique<PropertiesHandler>(this, m_pKaInstance);
    return PUSH;
}

} // namespace KAXML

#pragma once

#include <kaxml/kaxml/reader/instance_filler.h>
#include <kaxml/kaxml/reader/state_handler.h>

/// @file
/// The handlers that turn an instance document into instances: the root handler opens the parse,
/// an instance handler makes one instance for each instance element, a properties handler fills its
/// values, array and struct handlers fill composite ones, a relationship handler reads the ends of
/// a relationship in the legacy form.

namespace KAXML {

class CKaInstance;
class CKaProperty;
class KaArrayValue;
class KaRelationshipInstance;
class KaStructValue;

/// The root handler, at the bottom of the stack. Skips a document of another root element.
class KaInstanceXMLHandler : public StateHandler {
  public:
    /// @param saxHandler  not null (KAXMLInvalidArgument).
    explicit KaInstanceXMLHandler(CKAXMLSAXContentHandler* saxHandler);

    START_ACTION StartElement(const XmlName& name, XMLAttributes& attributes,
                              std::unique_ptr<StateHandler>& nextHandler) override;
    END_ACTION EndElement(const XmlName& name, std::unique_ptr<StateHandler>& nextHandler) override;

  private:
    void BeginParse(std::wstring_view namespaceUri, XMLAttributes& attributes);
};

/// Stands for one instance element at a time, and stays for all of them. Owns the instance being
/// filled until it is handed to the client's callback.
class InstanceHandler : public StateHandler {
  public:
    explicit InstanceHandler(StateHandler* parent);
    ~InstanceHandler() override;

    START_ACTION StartElement(const XmlName& name, XMLAttributes& attributes,
                              std::unique_ptr<StateHandler>& nextHandler) override;
    END_ACTION EndElement(const XmlName& name, std::unique_ptr<StateHandler>& nextHandler) override;

    /// Takes both ends from the element's attributes and returns 1, or returns 0 when either is
    /// missing. @throws KAXMLLogicError when the instance is no relationship.
    int HandleKAXML20Relationship(XMLAttributes& attributes);

  private:
    START_ACTION StartUnknown(const std::wstring& localName, std::unique_ptr<StateHandler>& nextHandler);
    void NotifyProject(const std::wstring& localName, XMLAttributes* attributes, bool isStart);
    void SetId(const std::wstring& localName, XMLAttributes& attributes);
    int HandOver();
    KaRelationshipInstance* AsRelationship() const;

    int m_isRelationship = 0;
    std::unique_ptr<CKaInstance> m_pKaInstance;
};

/// Stands for one property element at a time, and stays for all of its instance or struct.
class PropertiesHandler : public StateHandler {
  public:
    /// @param instance  the instance to fill; not null (KAXMLInvalidArgument), with a class
    ///                  (KAXMLRuntimeError); not owned.
    PropertiesHandler(StateHandler* parent, CKaInstance* instance);
    ~PropertiesHandler() override;

    START_ACTION StartElement(const XmlName& name, XMLAttributes& attributes,
                              std::unique_ptr<StateHandler>& nextHandler) override;
    void Characters(const wchar_t* text, std::size_t length) override;
    END_ACTION EndElement(const XmlName& name, std::unique_ptr<StateHandler>& nextHandler) override;

  private:
    START_ACTION StartUnknown(const std::wstring& localName, std::unique_ptr<StateHandler>& nextHandler);

    CKaInstance* m_pKaInstance;
    CKaProperty* m_pProperty = nullptr; // of the last start tag
    bool m_isPrimitive = false;         // the element that is open
    InstanceFiller m_filler;
};

/// Stays for all members of one array property element.
class ArrayHandler : public StateHandler {
  public:
    /// @param arrayValue  the array to fill; not null (KAXMLInvalidArgument); not owned.
    ArrayHandler(StateHandler* parent, KaArrayValue* arrayValue);
    ~ArrayHandler() override;

    START_ACTION StartElement(const XmlName& name, XMLAttributes& attributes,
                              std::unique_ptr<StateHandler>& nextHandler) override;
    void Characters(const wchar_t* text, std::size_t length) override;
    END_ACTION EndElement(const XmlName& name, std::unique_ptr<StateHandler>& nextHandler) override;

  private:
    std::wstring_view m_memberElementName;
    CKaProperty* m_pProperty;
    int m_membersAreStructs;
    KaArrayValue* m_pArrayValue;
    std::wstring m_memberText;
};

/// Stands for one struct element: a struct property's or an array member's.
class StructHandler : public StateHandler {
  public:
    /// @param structValue  the struct to fill; not null (KAXMLInvalidArgument); not owned.
    StructHandler(StateHandler* parent, KaStructValue* structValue);
    ~StructHandler() override;

    START_ACTION StartElement(const XmlName& name, XMLAttributes& attributes,
                              std::unique_ptr<StateHandler>& nextHandler) override;

  private:
    CKaInstance* m_pKaInstance;
};

/// Reads "KaSource" and "KaTarget" in front of a relationship's properties, then makes room for a
/// properties handler.
class RelationshipHandler : public StateHandler {
  public:
    /// @param relationship  not null (KAXMLInvalidArgument); not owned.
    RelationshipHandler(StateHandler* parent, KaRelationshipInstance* relationship);

    START_ACTION StartElement(const XmlName& name, XMLAttributes& attributes,
                              std::unique_ptr<StateHandler>& nextHandler) override;
    END_ACTION EndElement(const XmlName& name, std::unique_ptr<StateHandler>& nextHandler) override;

  private:
    int m_state;
    KaRelationshipInstance* m_pRelationship;
};

} // namespace KAXML

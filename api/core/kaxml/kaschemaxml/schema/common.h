#pragma once

#include <kaxml/platform/export.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace KAXML {

class CKaClass;
class CKaCustomAttribute;
class CKaInstance;
class CKaSchema;
class KaArrayValue;

/// @class KAXML::IXMLDOMNode
/// A node of the XML tree that a schema file is read or written by; opaque. The library makes the
/// nodes and calls the operations that take them; a class derived from one of the library's hands on
/// what it got.
class IXMLDOMNode;
/// @class KAXML::IXMLDOMDocument2
/// The whole of such a tree; opaque likewise.
class IXMLDOMDocument2;

/// What every item of a schema has: a description, custom attributes (owned, in the order added)
/// and extended information, free annotations of the client that are not part of schema files.
/// Base of CKaSchema, CKaClass, CKaProperty, CKaSource and CKaTargets.
///
/// Copies are deep: the copy owns copies of the custom attributes. An item is used by one thread
/// at a time.
class KAXML_API CKaCommon {
  public:
    CKaCommon();
    /// An item without custom attributes and extended information.
    /// @param description  null gives an empty description.
    explicit CKaCommon(const wchar_t* description);
    explicit CKaCommon(const std::wstring& description);
    CKaCommon(const CKaCommon& other);
    /// Replaces everything; a failing copy leaves this item as it was.
    CKaCommon& operator=(const CKaCommon& other);
    virtual ~CKaCommon();

    /// The description. Never null; valid until it is changed.
    const wchar_t* GetDescription() const noexcept;
    /// Any text.
    /// @param description  not null (KAXMLInvalidArgument).
    void SetDescription(const wchar_t* description);
    void SetDescription(const std::wstring& description);

    /// Appends a custom attribute and takes ownership; null is ignored. When the call throws the
    /// caller still owns it and the item is unchanged.
    /// @throws KAXMLLogicError when it is attached to this item already.
    void AddKaCustomAttribute(CKaCustomAttribute* customAttribute);
    /// How many custom attributes are attached.
    unsigned int GetKaCustomAttributeCount() const noexcept;
    /// A custom attribute, in the order attached.
    /// @param index  below the count (else KAXMLInvalidArgument). @return owned by the item.
    CKaCustomAttribute* GetKaCustomAttribute(unsigned int index) const;
    /// The first custom attribute whose type name is exactly this, or null; owned by the item.
    /// @param className  not null (KAXMLInvalidArgument).
    CKaCustomAttribute* FindKaCustomAttributeByName(const wchar_t* className) const;

    /// Inserts or overwrites a text annotation.
    void SetExtendedInfo(const std::wstring& key, const std::wstring& value);
    /// Inserts or overwrites a number annotation; numbers and texts have keys of their own.
    /// @param value  at most 4294967295 (else KAXMLInvalidArgument).
    void SetExtendedInfo(const std::wstring& key, unsigned long value);
    /// Returns 0 and sets `value`, or returns 0x8000 for a missing key and leaves it alone.
    int GetExtendedInfo(const std::wstring& key, std::wstring& value) const;
    /// The same for numbers. @param value  not null (KAXMLInvalidArgument).
    int GetExtendedInfo(const std::wstring& key, unsigned long* value) const;

    /// Reads the children of a "KaCustomAttributes" element and attaches them. The schema resolves
    /// their classes. Returns 0, or the first nonzero result of an instance's reader. What was read
    /// before a failure stays attached.
    /// @param schema,node  not null (KAXMLInvalidArgument).
    /// @throws KAXMLFormatError for an unknown class, text between the elements, or content that
    ///         does not fit the class.
    int ReadCustomAttributesFromXML(CKaSchema* schema, IXMLDOMDocument2* document, IXMLDOMNode* node);
    /// Appends a "KaCustomAttributes" element to the parent when there are any. Returns 0, or the
    /// first nonzero result of an instance's writer.
    /// @param document,parent  not null (KAXMLInvalidArgument).
    int WriteCustomAttributesToXML(IXMLDOMDocument2* document, IXMLDOMNode* parent) const;

    /// The array value of a property in the attached custom attribute of this class. When there is
    /// no such custom attribute: null, or with `createIfMissing` a new one is attached (and stays
    /// attached when a later check throws).
    /// @param customAttributeClass,propertyName  not null (KAXMLInvalidArgument).
    /// @return owned by the custom attribute.
    /// @throws KAXMLLogicError when the class has no such property, the value is missing or is no
    ///         array.
    KaArrayValue* GetArrayFromCustomAttribute(CKaClass* customAttributeClass, const wchar_t* propertyName,
                                              int createIfMissing);
    /// Appends a new struct member to that array (made when missing) and returns the member's
    /// instance for the caller to fill; the array owns it.
    /// @throws KAXMLLogicError as above; KAXMLRuntimeError when the struct class is unknown.
    CKaInstance* CreateArrayMemberForCustomAttribute(CKaClass* customAttributeClass, const wchar_t* propertyName);

  protected:
    /// Moves for the ends of relationships; the source keeps valid, unspecified content.
    CKaCommon(CKaCommon&& other) noexcept;
    CKaCommon& operator=(CKaCommon&& other) noexcept;

  private:
    friend class ModelCopier;

    std::wstring m_description;
    std::vector<std::unique_ptr<CKaCustomAttribute>> m_customAttributes;
    std::map<std::wstring, std::wstring> m_extendedInfoTexts;
    std::map<std::wstring, std::uint32_t> m_extendedInfoNumbers;
};

} // namespace KAXML

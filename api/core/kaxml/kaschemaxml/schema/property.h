#pragma once

#include <kaxml/kaschemaxml/schema/common.h>

namespace KAXML {

/// One typed property of a class. Its type is primitive ("string", "boolean", "double", "int",
/// "point3d", "dateTime", "binary", "long") or the name of a struct class; it holds one value or
/// an array of them.
///
/// @code
/// auto tags = std::make_unique<KAXML::CKaProperty>(&pump);
/// tags->SetPropertyName(L"Tags");
/// tags->SetTypeName(L"string");
/// tags->SetMinOccurs(L"0");
/// tags->SetMaxOccurs(L"unbounded");     // any bound but "1" makes it an array
/// pump.AddKaProperty(tags.get());
/// tags.release();                       // the class owns it now
/// @endcode
///
/// A class owns the properties added to it. Used by one thread at a time.
class KAXML_API CKaProperty : public CKaCommon {
  public:
    /// A property without name, type and bounds.
    /// @param owner  the class the property is made for; kept, not owned, may be null.
    explicit CKaProperty(CKaClass* owner);
    CKaProperty(const CKaProperty& other);
    CKaProperty& operator=(const CKaProperty& other);
    ~CKaProperty() override;

    /// The property's name. Never null; valid until it is changed.
    const wchar_t* GetPropertyName() const noexcept;
    /// The name itself; what is written through it is not validated.
    std::wstring& PropertyName() noexcept;
    /// Validates and stores the name; on failure the old one stays.
    /// @throws KAXMLLogicError for null, KAXMLDomainError for an invalid name.
    void SetPropertyName(const wchar_t* name);
    void SetPropertyName(const std::wstring& name);

    /// The type's name. Never null; valid until it is changed.
    const wchar_t* GetTypeName() const noexcept;
    /// The type's name itself; writing through it leaves IsStruct() alone.
    std::wstring& TypeName() noexcept;
    /// Stores the type's name; the property becomes a struct property unless the name is one of
    /// the primitive types'. @param typeName  not null (KAXMLInvalidArgument).
    void SetTypeName(const wchar_t* typeName);
    void SetTypeName(const std::wstring& typeName);

    /// The lower occurrence bound as text, empty when not set. Never null; valid until it is changed.
    const wchar_t* GetMinOccurs() const noexcept;
    /// The upper occurrence bound, likewise.
    const wchar_t* GetMaxOccurs() const noexcept;
    /// Stores the bound. Any text but "1" (an empty one too) makes the property an array, for good.
    /// @param minOccurs  not null (KAXMLInvalidArgument).
    void SetMinOccurs(const wchar_t* minOccurs);
    /// Stores the bound, with the same effect.
    /// @param maxOccurs  not null (KAXMLInvalidArgument).
    void SetMaxOccurs(const wchar_t* maxOccurs);

    /// The human-readable label, empty when not set. Never null.
    const wchar_t* GetDisplayLabel() const noexcept;
    /// Any text. An empty one counts as not set.
    /// @param label  not null (KAXMLInvalidArgument).
    void SetDisplayLabel(const wchar_t* label);

    /// Whether the type was set to another name than a primitive type's: zero or not.
    int IsStruct() const noexcept;
    /// Whether a bound other than "1" was set: zero or not.
    int IsArray() const noexcept;
    /// Whether clients are to leave values alone, zero or not; the library does not enforce it.
    int ReadOnly() const noexcept;
    /// Sets what ReadOnly returns.
    void SetReadOnly(int readOnly) noexcept;

    /// The class given at construction; not owned, may be null.
    CKaClass* GetKaClass() const noexcept;

    /// A number for the client's use, 0 at first; not part of schema files.
    long GetAttrId() const noexcept;
    /// Sets that number.
    /// @param attrId  a 32-bit value (else KAXMLInvalidArgument).
    void SetAttrId(long attrId);

    /// The default value's text, or null while none is set; not part of schema files.
    const wchar_t* GetClassDefaultValue() const noexcept;
    /// Any text. The library does nothing with it.
    /// @param value  null marks it as not set.
    void SetClassDefaultValue(const wchar_t* value);

    /// Reads a property element. Returns 0, or the nonzero result of its custom attributes'
    /// reader. What was read before a failure stays.
    /// @param node  not null (KAXMLInvalidArgument).
    /// @throws KAXMLFormatError for a missing name or type; what the setters throw.
    int ReadXML(CKaSchema* schema, IXMLDOMDocument2* document, IXMLDOMNode* node);
    /// Appends a property element to the parent. Returns 0, or the nonzero result of its custom
    /// attributes' writer.
    /// @param document,parent  not null (KAXMLInvalidArgument).
    int WriteXML(IXMLDOMDocument2* document, IXMLDOMNode* parent) const;

  private:
    friend class KnownProperties;
    friend class ModelCopier;

    std::wstring m_propertyName;
    std::wstring m_typeName;
    std::wstring m_minOccurs;
    std::wstring m_maxOccurs;
    std::wstring m_displayLabel;
    std::int32_t m_isStruct = 0;
    std::int32_t m_isArray = 0;
    std::int32_t m_readOnly = 0;
    CKaClass* m_pKaClass;
    std::int32_t m_attrId = 0;
    std::wstring m_classDefaultValue;
    bool m_classDefaultValueNotSet = true;
};

} // namespace KAXML

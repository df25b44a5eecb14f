#pragma once

#include <kaxml/kaschemaxml/schema/common.h>

namespace KAXML {

class CIDGenerationStrategy;
class CKaProperty;

/// A class of a schema: a name, an optional base class, flags that say what it is for, and an
/// ordered list of properties (owned).
///
/// @code
/// KAXML::CKaSchema plant(L"Plant", L"pl", L"A process plant");
/// KAXML::CKaClass* equipment = plant.CreateKaClass(L"Equipment", L"", KAXML::KA_DOMAIN_CLASS);
/// equipment->AddKaProperty(L"Tag", L"string", L"");
/// KAXML::CKaClass* pump = plant.CreateKaClass(L"Pump", L"", KAXML::KA_DOMAIN_CLASS);
/// pump->SetBaseClass(L"Equipment");
/// pump->FindProperty(L"Tag");           // inherited
/// @endcode
///
/// A class belongs to a schema, which owns it once it is added. Copies are deep: a copy owns
/// copies of properties and custom attributes, refers to the same schema and base class, and
/// belongs to nobody. Used by one thread at a time, together with its schema.
class KAXML_API CKaClass : public CKaCommon {
  public:
    /// A class without base class, properties and flags.
    /// @param name      a valid name, not null or empty.
    /// @param schema    not null; referred to, and not changed: the class is not added to it.
    /// @param strategy  kept, not owned, may be null.
    /// @throws KAXMLInvalidArgument for null arguments or an empty name, KAXMLDomainError for an
    ///         invalid name.
    CKaClass(const wchar_t* name, CKaSchema* schema, CIDGenerationStrategy* strategy);
    CKaClass(const CKaClass& other);
    CKaClass& operator=(const CKaClass& other);
    ~CKaClass() override;

    /// @name Schema XML
    /// Each returns 0, or the first nonzero result of an operation it calls, and leaves what was
    /// read before a failure. Nodes and documents are not null (KAXMLInvalidArgument).
    /// @{

    /// Appends a class element to the parent.
    virtual int WriteXML(IXMLDOMDocument2* document, IXMLDOMNode* parent);
    /// ReadXMLAttributes, then ReadXMLContents.
    virtual int ReadXML(CKaSchema* schema, IXMLDOMDocument2* document, IXMLDOMNode* node);
    /// Reads a class element's attributes. @throws KAXMLFormatError without a type name; what the
    /// setters throw.
    virtual int ReadXMLAttributes(IXMLDOMDocument2* document, IXMLDOMNode* node);
    /// Reads a class element's children. @throws KAXMLFormatError for a second base class; what
    /// AddKaProperty and SetBaseClass throw.
    virtual int ReadXMLContents(CKaSchema* schema, IXMLDOMDocument2* document, IXMLDOMNode* node);
    /// @}

    /// The name. Never null; valid until it is changed.
    const wchar_t* GetTypeName() const noexcept;
    /// The name itself; what is written through it is not validated.
    std::wstring& TypeName() noexcept;
    const std::wstring& TypeName() const noexcept;
    /// Validates and stores the name; on failure the old one stays. Other classes that name this
    /// one are not changed.
    /// @throws KAXMLInvalidArgument for null, KAXMLDomainError for an invalid name.
    void SetTypeName(const wchar_t* name);
    void SetTypeName(const std::wstring& name);

    /// The human-readable label, empty when not set. Never null.
    const wchar_t* GetDisplayLabel() const noexcept;
    /// Any text. An empty one counts as not set.
    /// @param label  not null (KAXMLInvalidArgument).
    void SetDisplayLabel(const wchar_t* label);

    /// The base class's name relative to the schema ("Equipment", "base:Equipment"), empty when
    /// there is none. Never null.
    const wchar_t* GetBaseClass() const noexcept;
    /// Resolves the base class and stores it; on failure the old one stays.
    /// @param fullName  a name, or prefix, colon and name; not null (KAXMLInvalidArgument).
    /// @throws KAXMLLogicError when no such class is found or it derives from this class,
    ///         KAXMLDomainError for an invalid name or unknown prefix, KAXMLFormatError for a
    ///         leading colon.
    void SetBaseClass(const wchar_t* fullName);
    void SetBaseClass(const std::wstring& fullName);
    /// The base class, or null when there is none; not owned.
    /// @throws KAXMLLogicError when its name cannot be resolved or the class has no schema.
    CKaClass* GetBaseKaClass() const;

    /// The bits of KaClassType that are set.
    unsigned long GetClassType() const noexcept;
    /// Sets the three flags. @param classType  1, 3, 4, 5, 6 or 7 (else KAXMLInvalidArgument, and
    /// nothing is changed).
    void SetClassType(unsigned long classType);
    /// Whether the class has one of the mask's bits; KA_ANY_CLASS_TYPE matches every class. Only
    /// the low 32 bits of the mask count.
    bool MatchesClassType(unsigned long mask) const noexcept;

    /// Whether KA_DOMAIN_CLASS is set: zero or not.
    int IsDomainClass() const noexcept;
    /// Whether KA_STRUCT_CLASS is set: zero or not.
    int IsStruct() const noexcept;
    /// Whether KA_CUSTOM_ATTRIBUTE_CLASS is set: zero or not.
    int IsCustomAttributeClass() const noexcept;
    /// Sets or clears this flag alone; which ones go together is not validated.
    void SetIsDomainClass(int isDomainClass) noexcept;
    /// @copydoc SetIsDomainClass
    void SetIsStruct(int isStruct) noexcept;
    /// @copydoc SetIsDomainClass
    void SetIsCustomAttributeClass(int isCustomAttributeClass) noexcept;

    /// Appends a property and takes ownership; null is ignored. When the call throws the caller
    /// still owns it and the class is unchanged.
    /// @throws KAXMLDomainError when the class or a base class has a property of the name,
    ///         KAXMLLogicError when its struct class is unknown to the schema.
    void AddKaProperty(CKaProperty* property);
    /// Makes a property and adds it. @return owned by the class.
    /// @throws KAXMLDomainError for an invalid name too; what the other form throws. The class is then
    ///         unchanged.
    CKaProperty* AddKaProperty(const std::wstring& name, const std::wstring& typeName, const std::wstring& description);
    /// The property of exactly this name: own ones first, then those of the base classes, nearest
    /// first; null when there is none. Owned by its class.
    /// @param name  not null (KAXMLInvalidArgument).
    /// @throws KAXMLLogicError when a base class cannot be resolved.
    CKaProperty* FindProperty(const wchar_t* name) const;
    /// Whether FindProperty finds one; throws as it does.
    bool HasProperty(const wchar_t* name) const;
    /// How many properties the class has of its own.
    unsigned int GetKaPropertyCount() const noexcept;
    /// An own property, in the order added.
    /// @param index  below the count (else KAXMLInvalidArgument). @return owned by the class.
    CKaProperty* GetKaProperty(unsigned int index) const;
    /// Deletes the first own property of the name; does nothing for null or an unknown name.
    /// Values made for the property must not be used afterwards.
    void RemoveKaProperty(const wchar_t* name);
    /// Deletes every own property.
    void RemoveAllKaProperties() noexcept;

    /// The schema the class belongs to, in which names are resolved; not owned.
    CKaSchema* GetKaSchema() const noexcept;
    /// Changes that schema; the schemas' lists of classes stay as they are.
    /// @param schema  may be null; what needs a schema then throws KAXMLLogicError.
    void SetKaSchema(CKaSchema* schema) noexcept;
    /// The schema's prefix, a colon and the name.
    /// @throws KAXMLLogicError when the class has no schema.
    std::wstring FullName() const;

    /// Whether a name may name a class or property: 1, or 0 without `throwOnError`.
    /// @throws KAXMLLogicError for null, always; KAXMLDomainError for an invalid name, with
    ///         `throwOnError`.
    static int KaNameIsValid(const wchar_t* name, int throwOnError);

  private:
    friend class CKaSchema;
    friend class KnownProperties;
    friend class ModelCopier;

    KAXML_LOCAL int WriteBaseClassToXML(IXMLDOMDocument2* document, IXMLDOMNode* element) const;

    std::wstring m_typeName;
    std::wstring m_baseClassName;
    std::wstring m_displayLabel;
    CKaClass* m_pBaseClass = nullptr;
    std::int32_t m_isStruct = 0;
    std::int32_t m_isCustomAttributeClass = 0;
    std::int32_t m_isDomainClass = 0;
    std::vector<std::unique_ptr<CKaProperty>> m_properties;
    CIDGenerationStrategy* m_pIDGenerationStrategy;
    CKaSchema* m_pKaSchema;
};

} // namespace KAXML

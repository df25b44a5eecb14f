#pragma once

#include <kaxml/kaschemaxml/instance/value.h>

namespace KAXML {

class CKaRelationshipClass;

/// One object of a class: an identifier and the values of its properties, in the order they were
/// given.
///
/// @code
/// KAXML::CKaInstance pump(schema.FindKaClass(L"Pump", KAXML::KA_ANY_CLASS_TYPE));
/// pump.SetInstanceID(L"P-101");
/// pump.SetPropertyValue(L"Tag", L"P-101");
/// pump.SetPropertyValue(L"Power", 7.5);
/// double power = 0;
/// pump.GetPropertyValue(L"Power", &power);
/// std::wstring xml;
/// pump.AppendAsXml(xml, L"");
/// @endcode
///
/// An instance owns its values and refers to its class, which must outlive it. Copies are deep. An
/// instance is used by one thread at a time, together with its schema. Destroying one never throws.
class KAXML_API CKaInstance {
  public:
    /// An instance without identifier and values.
    /// @param kaClass  not null (KAXMLLogicError).
    explicit CKaInstance(CKaClass* kaClass);
    CKaInstance(const CKaInstance& other);
    CKaInstance& operator=(const CKaInstance& other);
    /// Gives primitive values back to the pool and deletes the others.
    virtual ~CKaInstance();

    /// Appends the instance as XML text: an element named by the type name, with the id (as
    /// "instanceid", when there is one) and the attribute text, both as they stand, and the values.
    /// Nothing is escaped, and no namespace or declaration is added. What the output holds stays.
    /// @param output      not `attributes` and no text of the instance.
    /// @param attributes  further attributes, with a blank in front (" id='P-101'"); may be empty.
    /// @throws KAXMLLogicError for a struct without an instance; what was appended stays.
    virtual void AppendAsXml(std::wstring& output, const std::wstring& attributes) const;
    /// Appends the instance's element to the parent, in the namespace of its schema. Returns 0, or
    /// the first nonzero result of a value's writer.
    /// @param document,parent  not null (KAXMLInvalidArgument).
    /// @throws KAXMLLogicError for a class without a schema and for a struct without an instance.
    virtual int WriteXML(IXMLDOMDocument2* document, IXMLDOMNode* parent) const;
    /// Reads an instance element's name and values; attributes are not read. Returns 0. What was
    /// read before a failure stays.
    /// @param node  not null (KAXMLInvalidArgument).
    /// Throws as KaValueBase::CreateKaValueFromXml.
    virtual int ReadXML(IXMLDOMDocument2* document, IXMLDOMNode* node);
    /// The same with the type name given.
    int ReadFromXML(const std::wstring& typeName, IXMLDOMNode* node);
    /// Appends the values' elements only. Throws as AppendAsXml.
    void AppendValueToString(std::wstring& output) const;

    /// The class; not owned. Never null.
    CKaClass* GetKaClass() const noexcept;
    /// The type name, the class's at first. Never null; valid until changed.
    const wchar_t* GetTypeName() const noexcept;
    /// The type name itself.
    std::wstring& TypeName() noexcept;
    const std::wstring& TypeName() const noexcept;
    /// Changes the type name only, not the class. @param typeName  not null (KAXMLInvalidArgument).
    void SetTypeName(const wchar_t* typeName);
    void SetTypeName(const std::wstring& typeName);
    /// The identifier, any text, empty at first. Never null; valid until changed.
    const wchar_t* GetInstanceID() const noexcept;
    /// The identifier itself.
    std::wstring& InstanceID() noexcept;
    const std::wstring& InstanceID() const noexcept;
    /// Any text. @param instanceId  not null (KAXMLInvalidArgument).
    void SetInstanceID(const wchar_t* instanceId);
    void SetInstanceID(const std::wstring& instanceId);

    /// How many values were given.
    unsigned int GetKaValueCount() const noexcept;
    /// A value, in the order given. @param index  below the count (else KAXMLInvalidArgument).
    /// @return owned by the instance.
    KaValueBase* GetKaValue(unsigned int index) const;
    /// Appends a value and takes ownership; null is ignored. A value whose name is taken gets a
    /// number appended to its name (2, 3, ...). When the call throws the caller still owns the value
    /// and nothing is changed.
    /// @throws KAXMLLogicError when an instance or array holds the value already.
    void AddKaValue(KaValueBase* value);
    /// Drops every value: primitive ones go to the pool, others are deleted.
    void RemoveAllKaValues();

    /// The value of this name, owned by the instance; when missing null, or with `throwIfMissing`
    /// KAXMLLogicError.
    /// @param name  here and below: not null (KAXMLInvalidArgument).
    KaValueBase* GetPropertyValue(const wchar_t* name, bool throwIfMissing) const;
    /// The text of the primitive value of this name; null when there is none or it is not
    /// primitive. Valid until the value is changed.
    const wchar_t* GetPropertyValue(const wchar_t* name) const;
    /// The number in the primitive value of this name; see CKaValue::GetValue.
    /// @throws KAXMLLogicError when there is no such value or it is not primitive.
    void GetPropertyValue(const wchar_t* name, long* number) const;
    void GetPropertyValue(const wchar_t* name, double* number) const;
    /// Not for other types: the pointer would have to be one to the type that was meant.
    template <typename T> void GetPropertyValue(const wchar_t* name, T* number) const = delete;
    /// The primitive value of this name, owned by the instance.
    /// @throws KAXMLLogicError when there is no such value or it is not primitive.
    CKaValue* GetPrimitiveValue(const wchar_t* name) const;
    /// The same; a missing value is made first.
    /// @throws KAXMLDomainError when the class has no such property; KAXMLLogicError when it is not
    ///         primitive (its empty value was then made and stays).
    CKaValue* GetPrimitiveValueForSetting(const wchar_t* name);
    /// The text of GetPrimitiveValue itself; writing through it leaves the null state alone.
    std::wstring& PropertyValue(const wchar_t* name) const;

    /// Sets the primitive value of this name, which is made when missing; see CKaValue::SetValue.
    /// Throws as that and as GetPrimitiveValueForSetting.
    void SetPropertyValue(const wchar_t* name, const wchar_t* text);
    void SetPropertyValue(const wchar_t* name, const std::wstring& text);
    void SetPropertyValue(const wchar_t* name, long number);
    void SetPropertyValue(const wchar_t* name, int number);
    /// Stored as a signed 32-bit number, so values above 2147483647 get a minus sign; values above
    /// 4294967295 throw KAXMLInvalidArgument and change nothing.
    void SetPropertyValue(const wchar_t* name, unsigned long number);
    void SetPropertyValue(const wchar_t* name, unsigned int number);
    /// Stored with at most 15 significant digits.
    void SetPropertyValue(const wchar_t* name, double number);

  protected:
    /// GetPropertyValue(name, throwIfMissing).
    KaValueBase* FindValue(const wchar_t* name, bool throwIfMissing) const;
    /// The value of this name; a missing one is made for the class's property and added.
    KaValueBase* FindOrCreateValue(const wchar_t* name);

  private:
    friend class InstanceFiller;
    friend class InstanceText;
    friend class ModelCopier;
    friend class RecycledValues;

    template <typename Value> KAXML_LOCAL void SetPrimitive(const wchar_t* name, const Value& value);
    KAXML_LOCAL void SetText(CKaProperty* property, const wchar_t* name, const std::wstring& text);
    KAXML_LOCAL KaValueBase* CreateValue(CKaProperty* property);
    KAXML_LOCAL void Append(KaValueBase* value);

    std::wstring m_instanceID;
    std::wstring m_typeName;
    CKaClass* m_pKaClass;
    std::vector<std::unique_ptr<KaValueBase>> m_values;
};

/// An instance of a relationship class: it also names its source and its target by their ids.
class KAXML_API KaRelationshipInstance : public CKaInstance {
  public:
    /// A relationship without ids and values.
    /// @param relationshipClass  not null (KAXMLLogicError).
    explicit KaRelationshipInstance(CKaRelationshipClass* relationshipClass);
    KaRelationshipInstance(const KaRelationshipInstance& other);
    KaRelationshipInstance& operator=(const KaRelationshipInstance& other);
    ~KaRelationshipInstance() override;

    /// The id of the source, empty at first. Never null; valid until changed.
    const wchar_t* GetSourceID() const noexcept;
    /// The id of the target, likewise.
    const wchar_t* GetTargetID() const noexcept;
    /// Any text. @param sourceId  not null (KAXMLInvalidArgument).
    void SetSourceID(const wchar_t* sourceId);
    /// Any text. @param targetId  not null (KAXMLInvalidArgument).
    void SetTargetID(const wchar_t* targetId);

  private:
    std::wstring m_sourceID;
    std::wstring m_targetID;
};

} // namespace KAXML

#pragma once

#include <kaxml/platform/export.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace KAXML {

class CKaClass;
class CKaInstance;
class CKaProperty;
class IXMLDOMDocument2;
class IXMLDOMNode;

/// The value of a property in an instance: a primitive value (CKaValue), an array (KaArrayValue)
/// or a struct (KaStructValue). It refers to its property, keeps a copy of the property's name,
/// and may be null.
///
/// Values are used by one thread at a time, together with their schema.
class KAXML_API KaValueBase {
  public:
    virtual ~KaValueBase();
    /// Appends the value's content as XML text, unescaped.
    /// @throws KAXMLLogicError for a struct without an instance; what was appended stays.
    virtual void AppendValueToString(std::wstring& output) const = 0;
    /// Appends the value's element to the parent: named by the property, or, as a member of an
    /// array, by the property's type. Returns 0.
    /// @param document,parent  not null; this is not checked.
    /// @param namespaceUri     the element's namespace.
    /// @param isMember         nonzero for a member of an array.
    /// @throws KAXMLLogicError for a struct without an instance; what was appended stays.
    virtual int WriteXML(IXMLDOMDocument2* document, IXMLDOMNode* parent, const std::wstring& namespaceUri,
                         int isMember) const = 0;

    /// Makes the value a null value of this property.
    /// @param property  not null: else KAXMLInvalidArgument, and the value has lost its name, is
    ///                  null and keeps its old property.
    void Reinitialize(CKaProperty* property);
    /// The property; not owned. Never null.
    CKaProperty* GetProperty() const noexcept;
    /// The name under which the value is written and searched. Never null; valid until changed.
    const wchar_t* GetPropertyName() const noexcept;
    /// The name itself; the property stays when it is changed.
    std::wstring& PropertyName() noexcept;
    const std::wstring& PropertyName() const noexcept;
    /// Replaces the name; the property stays.
    void SetPropertyName(std::wstring name) noexcept;
    /// Whether the value counts as not given; it may have content all the same.
    bool IsNull() const noexcept;
    /// Makes the value count as not given; its content stays.
    void SetToNull() noexcept;
    /// Whether this is a CKaValue, not an array or a struct.
    bool IsPrimitive() const noexcept { return m_isPrimitive; }

    /// A new value of the kind the property needs: an array, a struct with an empty instance, or a
    /// null primitive value from the pool. The caller owns it.
    /// @param kaClass,property  not null (KAXMLInvalidArgument).
    /// @throws KAXMLRuntimeError when the struct class is unknown.
    static KaValueBase* CreateKaValueForKaProperty(CKaClass* kaClass, CKaProperty* property);
    /// A new value read from a value element of the tree, owned by the caller; null for an element
    /// without name or content.
    /// @throws KAXMLInvalidArgument for a null class or node, KAXMLFormatError for an unknown
    ///         property, a struct outside an array or a wrong member.
    static KaValueBase* CreateKaValueFromXml(CKaClass* kaClass, IXMLDOMNode* node);
    /// Appends the value's element as XML text: the content between tags of the property's name.
    void AppendAsXml(std::wstring& output) const;

  protected:
    /// @copydetails Reinitialize
    explicit KaValueBase(CKaProperty* property);
    /// Copies property, name and null state; the copy is held by nobody.
    KaValueBase(const KaValueBase& other);
    KaValueBase& operator=(const KaValueBase& other);
    /// Makes the value count as given.
    void SetNotNull() noexcept;

  private:
    friend class CKaInstance;
    friend class CKaValue;
    friend class InstanceText;
    friend class KaArrayValue;
    friend class ModelCopier;
    friend class RecycledValues;

    static constexpr std::uint32_t kNullStatus = 1;

    KAXML_LOCAL static void RequireProperty(const CKaProperty* property);

    CKaProperty* m_pProperty = nullptr;
    std::wstring m_propertyName;
    std::uint32_t m_status;
    // These stand in what would be padding.
    bool m_isHeld = false; // by an instance, an array or the pool, which owns the value
    bool m_isPrimitive = false;
};

/// A primitive value, held as text whatever its type.
class KAXML_API CKaValue : public KaValueBase {
  public:
    /// A value with this text.
    /// @param property  not null (KAXMLInvalidArgument).
    /// @param text      null leaves the value null.
    CKaValue(CKaProperty* property, const wchar_t* text);
    CKaValue(const CKaValue& other);
    CKaValue& operator=(const CKaValue& other);
    ~CKaValue() override;

    void AppendValueToString(std::wstring& output) const override;
    int WriteXML(IXMLDOMDocument2* document, IXMLDOMNode* parent, const std::wstring& namespaceUri,
                 int isMember) const override;

    /// Stores a text; the value is then not null.
    /// @param text  not null (KAXMLInvalidArgument). A null pointer constant picks this form.
    void SetValue(const wchar_t* text);
    void SetValue(const std::wstring& text);
    /// Stores a text without copying it; `text` is left with the room of the text before, empty.
    void SetValue(std::wstring&& text) noexcept;
    /// Stores a number in decimal. @param number  a 32-bit value (else KAXMLInvalidArgument, and
    /// nothing is changed).
    void SetValue(long number);
    void SetValue(int number);
    /// Stores a number with at most 15 significant digits.
    void SetValue(double number);
    /// The text, also of a null value. Never null; valid until it is changed.
    const wchar_t* GetValue() const noexcept;
    /// The text itself; writing through it leaves the null state alone.
    std::wstring& Value() noexcept;
    const std::wstring& Value() const noexcept;
    /// Reads the number at the text's front; 0 when there is none.
    /// @param number  not null (KAXMLInvalidArgument). Set also when the call throws for range: then
    ///                to the nearest value (32 bits for integers).
    /// @throws KAXMLRuntimeError for a number out of range.
    void GetValue(long* number) const;
    void GetValue(double* number) const;
    /// Not for other types: the pointer would have to be one to the type that was meant.
    template <typename T> void GetValue(T*) const = delete;
    /// Empties the text; the null state stays.
    void InitializeValue() noexcept;

  private:
    friend class InstanceText;
    friend class RecycledValues;

    std::wstring m_value;
};

/// An array: its members in order, each a CKaValue, a KaStructValue or null (an empty slot).
/// Destroying it gives primitive members back to the pool of recycled values.
class KAXML_API KaArrayValue : public KaValueBase {
  public:
    /// A null array without members.
    /// @param property  not null (KAXMLInvalidArgument).
    explicit KaArrayValue(CKaProperty* property);
    KaArrayValue(const KaArrayValue& other);
    KaArrayValue& operator=(const KaArrayValue& other);
    ~KaArrayValue() override;

    void AppendValueToString(std::wstring& output) const override;
    int WriteXML(IXMLDOMDocument2* document, IXMLDOMNode* parent, const std::wstring& namespaceUri,
                 int isMember) const override;

    /// Appends a member and takes ownership; null makes an empty slot. The array is then not null.
    /// When the call throws the caller still owns the member and nothing is changed.
    /// @throws KAXMLLogicError when an array or instance holds the value already.
    void PushBack(KaValueBase* member);
    /// How many members there are, empty slots included.
    unsigned int GetLength() const noexcept;
    /// A member. @param index  below the length (else KAXMLInvalidArgument). @return owned by the array; null
    ///               for an empty slot.
    KaValueBase* GetValue(unsigned int index) const;
    /// The instance of the struct at the index, owned by the array.
    /// @param index      below the length (else KAXMLInvalidArgument).
    /// @param className  when not null, the instance's type name must be exactly this.
    /// @throws KAXMLLogicError when the member is no struct, has no instance or one of another type.
    CKaInstance* GetStructInstance(unsigned int index, const wchar_t* className) const;

  private:
    friend class InstanceText;
    friend class ModelCopier;
    friend class RecycledValues;

    std::vector<std::unique_ptr<KaValueBase>> m_members;
};

/// A struct: an instance of the struct class that the property names as its type (owned).
class KAXML_API KaStructValue : public KaValueBase {
  public:
    /// Holds a new, empty instance; the value is not null.
    /// @param property  not null (KAXMLInvalidArgument).
    /// @throws KAXMLRuntimeError when the schema of the property's class knows no such class.
    explicit KaStructValue(CKaProperty* property);
    KaStructValue(const KaStructValue& other);
    KaStructValue& operator=(const KaStructValue& other);
    ~KaStructValue() override;

    void AppendValueToString(std::wstring& output) const override;
    int WriteXML(IXMLDOMDocument2* document, IXMLDOMNode* parent, const std::wstring& namespaceUri,
                 int isMember) const override;

    /// The instance, owned by the value; null when set to null.
    CKaInstance* GetValue() const noexcept;
    /// Deletes the instance held so far (unless it is this one) and takes ownership. Null makes the
    /// value null.
    /// @throws KAXMLLogicError when the instance's type name is not the property's; the caller then
    ///         still owns it and nothing is changed.
    void SetValue(CKaInstance* instance);
    /// Replaces the instance by one read from a struct element. Returns 0.
    /// @throws KAXMLRuntimeError for a null class; KAXMLInvalidArgument for a null node;
    ///         KAXMLFormatError for content that does not fit. The old instance is then still held.
    int ReadXML(CKaClass* structClass, IXMLDOMNode* node);

  private:
    friend class InstanceText;
    friend class KnownStructs;
    friend class ModelCopier;
    friend class RecycledValues;

    KAXML_LOCAL KaStructValue(CKaProperty* property, CKaClass& structClass);

    std::unique_ptr<CKaInstance> m_pInstance;
};

} // namespace KAXML

#pragma once

#include <kaxml/platform/export.h>

#include <memory>
#include <string>
#include <vector>

namespace KAXML {

class IXMLDOMDocument2;
class IXMLDOMNode;

/// One end of a source/target pair of older schema files. Setters ignore null. Used by one
/// thread at a time.
class KAXML_API CKaConstraint {
  public:
    /// Empty texts, no keys.
    CKaConstraint();
    /// An end for this class.
    /// @param key  becomes the first key when not null.
    CKaConstraint(const std::wstring& className, const wchar_t* key);
    CKaConstraint(const CKaConstraint& other);
    CKaConstraint& operator=(const CKaConstraint& other);
    ~CKaConstraint();

    /// The class allowed at the end. Never null; valid until changed.
    const wchar_t* GetClassNameW() const noexcept;
    /// Any text: the class is looked up when the pair is upgraded.
    void SetClassName(const wchar_t* className);
    /// The role that the end plays. Never null; valid until changed.
    const wchar_t* GetRoleLabel() const noexcept;
    /// Any text.
    void SetRoleLabel(const wchar_t* roleLabel);
    /// Appends the name of a key property.
    void AddKaRelationshipKey(const wchar_t* key);
    /// How many keys there are.
    unsigned int GetKaRelationshipKeyCount() const noexcept;
    /// A copy of a key. @param index  below the count (else KAXMLInvalidArgument).
    std::wstring GetKaRelationshipKey(unsigned int index) const;

    /// Reads one end of a pair; returns 0. What was read before a failure stays.
    /// @param node  not null (KAXMLInvalidArgument).
    int ReadXML(IXMLDOMDocument2* document, IXMLDOMNode* node);

  private:
    friend class CKaRelationshipClass;

    std::wstring m_className;
    std::wstring m_roleLabel;
    std::vector<std::wstring> m_keyVector;
};

/// A source/target pair of older schema files; owns both ends, either may be null. Copies are
/// deep. Used by one thread at a time.
class KAXML_API CKaRelationshipConstraint {
  public:
    /// A pair without ends.
    CKaRelationshipConstraint();
    CKaRelationshipConstraint(const CKaRelationshipConstraint& other);
    CKaRelationshipConstraint& operator=(const CKaRelationshipConstraint& other);
    ~CKaRelationshipConstraint();

    /// The source end, owned by the pair; null when not set.
    CKaConstraint* GetSourceConstraint() const noexcept;
    /// The target end, owned by the pair; null when not set.
    CKaConstraint* GetTargetConstraint() const noexcept;
    /// Deletes the end held so far and takes ownership of the argument, which may be null. Setting
    /// the one already held changes nothing.
    void SetSourceConstraint(CKaConstraint* constraint) noexcept;
    /// @copydoc SetSourceConstraint
    void SetTargetConstraint(CKaConstraint* constraint) noexcept;

    /// Reads one pair. Returns 0, or the first nonzero result of an end's reader. What was read before
    /// a failure stays.
    /// @param node  not null (KAXMLInvalidArgument).
    int ReadXML(IXMLDOMDocument2* document, IXMLDOMNode* node);

  private:
    std::unique_ptr<CKaConstraint> m_pSourceConstraint;
    std::unique_ptr<CKaConstraint> m_pTargetConstraint;
};

} // namespace KAXML

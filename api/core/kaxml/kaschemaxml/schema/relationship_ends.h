#pragma once

#include <kaxml/kaschemaxml/schema/common.h>

namespace KAXML {

class CKaRelationshipClass;

/// The source end of a relationship class: the one class allowed there and how it takes part. Its
/// description and custom attributes belong to the end.
///
/// The fields are open; none of them is checked until the schema is written. Copies are deep. A
/// relationship class is the owner of the ends it holds, whatever is assigned to them; a copy on its
/// own has the owner of its original. Used by one thread at a time, together with its schema.
class KAXML_API CKaSource : public CKaCommon {
  public:
    /// An end of its own, everything empty.
    CKaSource();
    CKaSource(const CKaSource& other);
    CKaSource(CKaSource&& other) noexcept;
    CKaSource& operator=(const CKaSource& other);
    CKaSource& operator=(CKaSource&& other) noexcept;
    ~CKaSource() override;

    /// The relationship class that contains this end; null for an end made on its own.
    CKaRelationshipClass* GetOwner() const noexcept { return m_pOwner; }

  private:
    friend class CKaRelationshipClass;
    friend class ModelCopier;

    KAXML_LOCAL int ReadXML(CKaSchema* schema, IXMLDOMDocument2* document, IXMLDOMNode* node);
    KAXML_LOCAL int WriteXML(CKaRelationshipClass* relationshipClass, IXMLDOMDocument2* document,
                             IXMLDOMNode* parent) const;
    KAXML_LOCAL void ReadXMLClass(IXMLDOMNode* node);

    CKaRelationshipClass* m_pOwner = nullptr;

  public:
    /// The role the source plays.
    std::wstring m_roleLabel;
    /// The class allowed, relative to the relationship class's schema; empty for none given,
    /// "KaObject" for any.
    std::wstring m_className;
    /// Names of the class's key properties.
    std::vector<std::wstring> m_keyVector;
    /// Free text.
    std::wstring m_cardinality;
    /// Nonzero: classes derived from the one named are allowed too.
    std::int32_t m_isPolymorphic = 0;
};

/// The target end of a relationship class: the classes allowed there, each with its key
/// properties. `m_classNames` and `m_keyVectors` run side by side and have the same length.
///
/// @copydetails CKaSource
class KAXML_API CKaTargets : public CKaCommon {
  public:
    /// An end of its own, everything empty.
    CKaTargets();
    CKaTargets(const CKaTargets& other);
    CKaTargets(CKaTargets&& other) noexcept;
    CKaTargets& operator=(const CKaTargets& other);
    CKaTargets& operator=(CKaTargets&& other) noexcept;
    ~CKaTargets() override;

    /// The relationship class that contains this end; null for an end made on its own.
    CKaRelationshipClass* GetOwner() const noexcept { return m_pOwner; }

  private:
    friend class CKaRelationshipClass;
    friend class ModelCopier;

    KAXML_LOCAL int ReadXML(CKaSchema* schema, IXMLDOMDocument2* document, IXMLDOMNode* node);
    KAXML_LOCAL int WriteXML(CKaRelationshipClass* relationshipClass, IXMLDOMDocument2* document,
                             IXMLDOMNode* parent) const;
    KAXML_LOCAL void ReadXMLClass(IXMLDOMNode* node);

    CKaRelationshipClass* m_pOwner = nullptr;

  public:
    /// The role the targets play.
    std::wstring m_roleLabel;
    /// The classes allowed, each relative to the relationship class's schema.
    std::vector<std::wstring> m_classNames;
    /// The key properties' names of each class.
    std::vector<std::vector<std::wstring>> m_keyVectors;
    /// Free text.
    std::wstring m_cardinality;
    /// Nonzero: classes derived from those named are allowed too.
    std::int32_t m_isPolymorphic = 0;
};

} // namespace KAXML

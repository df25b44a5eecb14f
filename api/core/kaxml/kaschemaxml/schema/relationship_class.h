#pragma once

#include <kaxml/kaschemaxml/schema/class.h>
#include <kaxml/kaschemaxml/schema/relationship_ends.h>

namespace KAXML {

class CKaConstraint;
class CKaRelationshipConstraint;

/// A class whose instances connect a source to a target: besides what any class has, two ends, a
/// strength and its direction (free texts).
///
/// @code
/// KAXML::CKaRelationshipClass* feeds =
///     plant.CreateKaRelationshipClass(L"Feeds", L"", KAXML::KA_DOMAIN_CLASS);
/// feeds->m_source.m_className = L"Pump";
/// feeds->m_targets.m_classNames = {L"Vessel", L"Column"};
/// feeds->m_targets.m_keyVectors = {{L"Tag"}, {}};
/// @endcode
///
/// Used by one thread at a time, together with its schema.
class KAXML_API CKaRelationshipClass : public CKaClass {
  public:
    /// @copydoc CKaClass::CKaClass(const wchar_t*, CKaSchema*, CIDGenerationStrategy*)
    CKaRelationshipClass(const wchar_t* name, CKaSchema* schema, CIDGenerationStrategy* strategy);
    CKaRelationshipClass(const CKaRelationshipClass& other);
    CKaRelationshipClass& operator=(const CKaRelationshipClass& other);
    ~CKaRelationshipClass() override;

    /// Appends a relationship class element to the parent.
    /// @throws KAXMLLogicError when the target's classes and keys differ in number,
    ///         KAXMLFormatError when a class of an end cannot be found.
    int WriteXML(IXMLDOMDocument2* document, IXMLDOMNode* parent) override;
    /// Reads a relationship class element's children, upgrading pairs of older files.
    int ReadXMLContents(CKaSchema* schema, IXMLDOMDocument2* document, IXMLDOMNode* node) override;

    /// The strength, empty by default. Never null; valid until it is changed.
    const wchar_t* GetStrength() const noexcept;
    /// The direction of the strength, likewise.
    const wchar_t* GetStrengthDirection() const noexcept;
    /// Any text. @param strength  not null (KAXMLInvalidArgument).
    void SetStrength(const wchar_t* strength);
    /// Any text. @param direction  not null (KAXMLInvalidArgument).
    void SetStrengthDirection(const wchar_t* direction);

    /// Sets `result` to the nearest class that both classes are or derive from, "KaObject" when
    /// there is none. Returns 0 when the two names are equal (the classes are then not looked up),
    /// else 1. A prefixed name is looked up by full name first.
    /// @param schema,className1,className2  not null (KAXMLInvalidArgument).
    /// @throws KAXMLFormatError for a class that neither the schema nor its class resolution helper
    ///         knows, KAXMLLogicError when a base class cannot be resolved.
    int FindCommonClass(CKaSchema* schema, const wchar_t* className1, const wchar_t* className2, std::wstring& result);

    /// Adds a pair of older files to the ends: its source, then its target. What was changed before
    /// a failure stays.
    /// @throws KAXMLInvalidArgument for null arguments or a pair with a missing end; as
    ///         FindCommonClass.
    void UpgradeLegacyKaRelationshipConstraint(CKaSchema* schema, CKaRelationshipConstraint* constraint);
    /// The first source is taken as it is; a later one makes the source the common class of both,
    /// and polymorphic when they differ. Throws as above.
    void UpgradeLegacySource(CKaSchema* schema, CKaConstraint* constraint);
    /// Adds the class to the target's unless it is there.
    /// @param schema,constraint  not null (KAXMLInvalidArgument).
    void UpgradeLegacyTarget(CKaSchema* schema, CKaConstraint* constraint);

    CKaSource m_source;   ///< the source end
    CKaTargets m_targets; ///< the target end

  private:
    friend class ModelCopier;

    KAXML_LOCAL void ReadLegacyPairs(CKaSchema* schema, IXMLDOMDocument2* document, IXMLDOMNode* node);
    KAXML_LOCAL void ReadLegacyPair(CKaSchema* schema, IXMLDOMDocument2* document, IXMLDOMNode* node);

    std::wstring m_strength;
    std::wstring m_strengthDirection;
};

} // namespace KAXML

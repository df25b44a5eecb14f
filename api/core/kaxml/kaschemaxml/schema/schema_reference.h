#pragma once

#include <kaxml/platform/export.h>

#include <string>

namespace KAXML {

class CKaSchema;
class IXMLDOMDocument2;
class IXMLDOMNode;

/// Names a schema that another one uses: its name, version ("01.02") and the prefix for its
/// classes, with the schema itself once it is loaded. Copying and moving copy the pointer; the
/// reference owns nothing. The schema whose list holds the reference owns the referenced schema.
/// Used by one thread at a time, together with that schema.
class KAXML_API CKaSchemaReference {
  public:
    /// Empty texts, no schema.
    CKaSchemaReference();
    /// A reference to this schema, under its own name, prefix and version.
    /// @param schema  not null (KAXMLInvalidArgument).
    explicit CKaSchemaReference(CKaSchema* schema);
    CKaSchemaReference(const CKaSchemaReference& other);
    CKaSchemaReference(CKaSchemaReference&& other) noexcept;
    CKaSchemaReference& operator=(const CKaSchemaReference& other);
    CKaSchemaReference& operator=(CKaSchemaReference&& other) noexcept;
    ~CKaSchemaReference();

    /// The referenced schema, null while it is not loaded; not owned by the reference.
    CKaSchema* GetSchema() const noexcept;

    /// Reads a "KaSchemaReference" element: finds the referenced file in the current directory,
    /// then in the directories of KASCHEMA_PATH, then in the owner's search path, reads it and adds
    /// the reference to the owner. Does nothing more when the owner already has the schema.
    /// Returns 0. On failure nothing is added.
    /// @param owner,node  not null (KAXMLInvalidArgument).
    /// @throws KAXMLFormatError for an unknown attribute, a malformed version, or a file that
    ///         answers with a status; KAXMLRuntimeError when the file is not found or the
    ///         references form a cycle; whatever reading the file throws.
    int ReadXML(CKaSchema* owner, IXMLDOMDocument2* document, IXMLDOMNode* node);
    /// Appends a "KaSchemaReference" element to the parent. Returns 0.
    /// @param document,parent  not null (KAXMLInvalidArgument).
    int WriteXML(IXMLDOMDocument2* document, IXMLDOMNode* parent) const;

    std::wstring m_schemaName;    ///< name of the referenced schema
    std::wstring m_schemaPrefix;  ///< prefix under which its classes are used
    std::wstring m_versionString; ///< its version

  private:
    friend class CKaSchema;
    friend class ModelCopier;

    KAXML_LOCAL void ReadAttributes(IXMLDOMNode* node);
    CKaSchema* m_pKaSchema = nullptr;
};

} // namespace KAXML

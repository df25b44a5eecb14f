#pragma once

#include <kaxml/platform/dom.h>

#include <string>

namespace KAXML {

class CKaSchema;

/// The document of a schema file, with the way by which it came to be read: the document whose
/// reference led here, up to the one that the client asked for.
class SchemaDocument : public IXMLDOMDocument2 {
  public:
    /// @param schema    the schema that the file fills.
    /// @param referrer  null for the file that the client asked for; must outlive this document.
    SchemaDocument(const CKaSchema& schema, const std::wstring& path, const SchemaDocument* referrer);

    /// @throws KAXMLRuntimeError, naming the schemas, when this file is being read already, here or
    ///         further up, when the way has become longer than any real one, or when the client's
    ///         file has led to more files than any real one does.
    void RequireNotOnTheWayHere(const std::wstring& path) const;

  private:
    std::wstring NamesFrom(const SchemaDocument* first) const;

    const CKaSchema& m_schema;
    std::wstring m_canonicalPath;
    const SchemaDocument* m_referrer;
    mutable int m_filesBelow = 0; // counted in the client's document
};

} // namespace KAXML

#include <kaxml/kaschemaxml/xml/schema_document.h>

#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaxml/core/errors.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/platform/file.h>

namespace KAXML {

namespace {

// Reading a referenced file happens inside the reading of the file that names it.
constexpr int kLongestWay = 1000;
// Every reference to a file reads it again, so a few files that refer to each other on many levels
// would otherwise be read without end.
constexpr int kMostFiles = 10000;

} // namespace

SchemaDocument::SchemaDocument(const CKaSchema& schema, const std::wstring& path, const SchemaDocument* referrer)
    : m_schema(schema), m_canonicalPath(CanonicalPath(path)), m_referrer(referrer) {}

void SchemaDocument::RequireNotOnTheWayHere(const std::wstring& path) const {
    const std::wstring canonicalPath = CanonicalPath(path);
    int length = 0;
    const SchemaDocument* first = this;
    for (const SchemaDocument* document = this; document != nullptr; document = document->m_referrer) {
        first = document;
        if (document->m_canonicalPath == canonicalPath)
            throw KAXMLRuntimeError(
                Concat(L"KaSchema references form a cycle: ", NamesFrom(document), document->m_schema.GetSchemaName()));
        if (++length == kLongestWay)
            throw KAXMLRuntimeError(
                Concat(L"KaSchema references are nested too deep at '", path, L"': the limit is 1000 files"));
    }
    if (++first->m_filesBelow > kMostFiles)
        throw KAXMLRuntimeError(
            Concat(L"KaSchema references lead to too many files at '", path, L"': the limit is 10000 files"));
}

std::wstring SchemaDocument::NamesFrom(const SchemaDocument* first) const {
    std::wstring names;
    for (const SchemaDocument* document = this;; document = document->m_referrer) {
        names.insert(0, std::wstring(document->m_schema.GetSchemaName()) + L" -> ");
        if (document == first)
            return names;
    }
}

} // namespace KAXML

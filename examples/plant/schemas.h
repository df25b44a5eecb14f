#pragma once

#include <kaxml/kaxml.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace plant {

/// A schema and the file it came from.
struct LoadedSchema {
    std::unique_ptr<KAXML::CKaSchema> schema;
    std::filesystem::path file;
};

/// Reads a schema file with the schemas it references.
/// @throws std::runtime_error for a file that is no schema of the present format; what the library
///         throws for anything else.
LoadedSchema LoadSchema(const std::filesystem::path& file, const std::wstring& searchPath);

/// The schemas themselves.
std::vector<KAXML::CKaSchema*> PointersTo(const std::vector<LoadedSchema>& schemas);

/// The references of a schema, in order.
std::vector<KAXML::CKaSchemaReference*> ReferencesOf(KAXML::CKaSchema& schema);

/// The schemas, each followed by those it references, at any depth; every name and version once.
std::vector<KAXML::CKaSchema*> WithReferences(const std::vector<KAXML::CKaSchema*>& schemas);

/// Where a referenced schema's file is found: the library looks into the current directory, those
/// in KASCHEMA_PATH and those of the search path. Empty when it is in none of them.
std::filesystem::path FindSchemaFile(const std::wstring& fileName, const std::wstring& searchPath);

} // namespace plant

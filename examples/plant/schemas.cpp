#include "schemas.h"

#include "text.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace plant {

LoadedSchema LoadSchema(const std::filesystem::path& file, const std::wstring& searchPath) {
    // The file brings its own name and prefix; these stand for "not known yet".
    auto schema = std::make_unique<KAXML::CKaSchema>(L"temporary", L"temporary", nullptr);
    schema->SetSearchPath(searchPath.c_str());
    const int status = schema->ReadXML(file.wstring().c_str());
    if (status != 0)
        throw std::runtime_error(file.string() + ": not a schema file (status " + std::to_string(status) + ")");
    return {std::move(schema), file};
}

std::vector<KAXML::CKaSchema*> PointersTo(const std::vector<LoadedSchema>& schemas) {
    std::vector<KAXML::CKaSchema*> pointers;
    for (const LoadedSchema& loaded : schemas)
        pointers.push_back(loaded.schema.get());
    return pointers;
}

std::vector<KAXML::CKaSchemaReference*> ReferencesOf(KAXML::CKaSchema& schema) {
    std::vector<KAXML::CKaSchemaReference*> references;
    KAXML::CKaReferencedSchemaIterator iterator(&schema);
    for (auto* reference = iterator.Begin(); reference; reference = iterator.Next())
        references.push_back(reference);
    return references;
}

std::vector<KAXML::CKaSchema*> WithReferences(const std::vector<KAXML::CKaSchema*>& schemas) {
    std::vector<KAXML::CKaSchema*> all;
    const auto add = [&all](KAXML::CKaSchema* added) {
        const auto isAdded = [&](KAXML::CKaSchema* other) { return other->XmlNamespace() == added->XmlNamespace(); };
        if (std::none_of(all.begin(), all.end(), isAdded))
            all.push_back(added);
    };
    for (KAXML::CKaSchema* schema : schemas) {
        add(schema);
        for (const auto* reference : ReferencesOf(*schema))
            if (reference->GetSchema())
                for (KAXML::CKaSchema* referenced : WithReferences({reference->GetSchema()}))
                    add(referenced);
    }
    return all;
}

std::filesystem::path FindSchemaFile(const std::wstring& fileName, const std::wstring& searchPath) {
    const char* environment = std::getenv("KASCHEMA_PATH");
    std::wistringstream directories(L".;" + KAXML::ToWString(environment) + L";" + searchPath);
    for (std::wstring directory; std::getline(directories, directory, L';');) {
        const std::filesystem::path file = std::filesystem::path(directory) / fileName;
        if (!directory.empty() && std::filesystem::is_regular_file(file))
            return file.lexically_normal();
    }
    return {};
}

} // namespace plant

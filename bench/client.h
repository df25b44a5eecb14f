#pragma once

#include "tally.h"

#include <filesystem>
#include <functional>
#include <kaxml/kaxml.h>
#include <string>

namespace bench {

/// Reads a schema into an empty one made for it. @throws std::runtime_error when it is refused.
void ReadSchema(KAXML::CKaSchema& schema, const std::filesystem::path& file);

/// A client of the library that streams instance documents of one schema.
class Client final {
  public:
    /// Is shown each instance before the library destroys it.
    using Visitor = std::function<void(const KAXML::CKaInstance&)>;

    explicit Client(const std::filesystem::path& schemaFile);

    /// Both return the number of instances, relationships included.
    std::size_t ParseFile(const std::filesystem::path& document, const Visitor& visitor = {});
    std::size_t ParseText(const std::wstring& text);

    Tally Count(const std::filesystem::path& document);

  private:
    std::size_t Parse(int isUrl, const std::wstring& source, const Visitor& visitor);

    KAXML::CKaSchema m_schema;
};

} // namespace bench

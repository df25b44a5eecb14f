#pragma once

#include "document.h"

#include <filesystem>
#include <ostream>
#include <vector>

namespace plant {

/// A new, empty folder for temporary files; goes with everything in it.
class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }

  private:
    std::filesystem::path m_path;
};

/// Saves the schemas and those they reference into the folder, reads the files back and compares
/// whole models. Prints what it finds; true when nothing differs.
bool RoundTripSchemas(std::ostream& out, const std::vector<KAXML::CKaSchema*>& schemas,
                      const std::filesystem::path& folder);

/// Writes every instance as text, parses that and compares. Prints what it finds; true when
/// nothing differs. Projects are not written: the format lets instances stand directly in the root.
bool RoundTripInstances(std::ostream& out, const Document& document, const ParseSettings& settings);

} // namespace plant

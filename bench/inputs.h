#pragma once

#include "generate.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace bench {

/// A document and the schema file it needs.
struct InstanceInput {
    std::filesystem::path schema;
    std::filesystem::path document;
};

/// The inputs of one run, generated when they are first asked for, in a folder of their own.
class Inputs {
  public:
    /// @param parent   where the folder goes.
    /// @param isSmall  tiny inputs: they show that everything works, not how fast it is.
    /// @param isKept   the folder stays.
    Inputs(const std::filesystem::path& parent, bool isSmall, bool isKept);
    ~Inputs();
    Inputs(const Inputs&) = delete;
    Inputs& operator=(const Inputs&) = delete;

    /// @throws std::logic_error unless the library and pugixml build the same objects from it.
    const InstanceInput& Document(Kind kind);
    /// The plant document with a schema of many classes more, which it does not need.
    InstanceInput CrowdedPlant(std::size_t otherClasses);
    /// The plant document as wide text.
    const std::wstring& PlantText();
    /// A document of another size or shape; the caller removes it.
    InstanceInput Special(const std::string& name, Kind kind, const Amount& amount);

    /// A schema of this many classes, before Scaled.
    const std::filesystem::path& LargeSchema(std::size_t classCount);
    /// The schema with references, in front, and the files it refers to.
    const std::vector<std::filesystem::path>& ReferencingSchema();

    const std::filesystem::path& Folder() const noexcept { return m_folder; }
    /// A number of bytes, elements and the like, made small when the inputs are.
    std::size_t Scaled(std::size_t number) const noexcept { return m_isSmall ? number / 50 : number; }

  private:
    Amount AmountOf(Kind kind) const noexcept;

    std::filesystem::path m_folder;
    bool m_isSmall;
    bool m_isKept;
    std::map<Kind, InstanceInput> m_documents;
    std::map<std::size_t, std::filesystem::path> m_schemas;
    std::vector<std::filesystem::path> m_referencing;
    std::wstring m_plantText;
};

} // namespace bench

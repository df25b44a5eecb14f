#include "inputs.h"

#include "client.h"
#include "pugixml_client.h"

#include <fstream>
#include <iterator>
#include <pugixml.hpp>
#include <stdexcept>
#include <unistd.h>

namespace bench {
namespace {

constexpr std::size_t kMegabyte = 1'000'000;

void RequireSameObjects(const InstanceInput& input) {
    const Tally ours = Client(input.schema).Count(input.document);
    const Tally theirs = PugixmlCount(input.document);
    if (ours == theirs)
        return;
    const auto text = [](const Tally& tally) {
        return std::to_string(tally.instances) + " instances, " + std::to_string(tally.values) + " values, " +
               std::to_string(tally.characters) + " characters";
    };
    throw std::logic_error("from " + input.document.string() + " the library's client makes " + text(ours) +
                           ", pugixml's " + text(theirs));
}

std::wstring ReadWide(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return pugi::as_wide(std::string(std::istreambuf_iterator<char>(file), {}));
}

} // namespace

Inputs::Inputs(const std::filesystem::path& parent, bool isSmall, bool isKept)
    : m_folder(parent / ("kaxml_bench." + std::to_string(getpid()))), m_isSmall(isSmall), m_isKept(isKept) {
    std::filesystem::create_directories(m_folder);
}

Inputs::~Inputs() {
    std::error_code ignored;
    if (!m_isKept)
        std::filesystem::remove_all(m_folder, ignored);
}

Amount Inputs::AmountOf(Kind kind) const noexcept {
    Amount amount{Scaled(64 * kMegabyte)};
    if (kind == Kind::arrays)
        amount.length = Scaled(100'000);
    if (kind == Kind::longValues)
        amount.length = Scaled(kMegabyte);
    return amount;
}

const InstanceInput& Inputs::Document(Kind kind) {
    InstanceInput& input = m_documents[kind];
    if (input.document.empty()) {
        input = Special("document" + std::to_string(static_cast<int>(kind)), kind, AmountOf(kind));
        RequireSameObjects(input);
    }
    return input;
}

InstanceInput Inputs::CrowdedPlant(std::size_t otherClasses) {
    const InstanceInput input{m_folder / "crowded.kaschema.xml", Document(Kind::plant).document};
    WriteInstanceSchema(input.schema, Kind::plant, Scaled(otherClasses));
    return input;
}

const std::wstring& Inputs::PlantText() {
    if (m_plantText.empty())
        m_plantText = ReadWide(Document(Kind::plant).document);
    return m_plantText;
}

InstanceInput Inputs::Special(const std::string& name, Kind kind, const Amount& amount) {
    InstanceInput input{m_folder / (name + ".kaschema.xml"), m_folder / (name + ".xml")};
    WriteInstanceSchema(input.schema, kind);
    WriteInstanceDocument(input.document, kind, amount);
    return input;
}

const std::filesystem::path& Inputs::LargeSchema(std::size_t classCount) {
    std::filesystem::path& path = m_schemas[classCount];
    if (path.empty()) {
        path = m_folder / ("Large" + std::to_string(classCount) + ".kaschema.xml");
        WriteLargeSchema(path, Scaled(classCount));
    }
    return path;
}

const std::vector<std::filesystem::path>& Inputs::ReferencingSchema() {
    if (m_referencing.empty()) {
        const std::filesystem::path folder = m_folder / "references";
        std::filesystem::create_directory(folder);
        m_referencing.push_back(folder / "Referencing.01.00.kaschema.xml");
        WriteReferencingSchema(m_referencing.front(), 30, Scaled(100));
        for (const auto& entry : std::filesystem::directory_iterator(folder))
            if (entry.path() != m_referencing.front())
                m_referencing.push_back(entry.path());
    }
    return m_referencing;
}

} // namespace bench

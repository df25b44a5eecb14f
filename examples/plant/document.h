#pragma once

#include <kaxml/kaxml.h>

#include <deque>
#include <filesystem>
#include <string>
#include <vector>

namespace plant {

/// A "Project" element: a group of instances, perhaps inside another one.
struct Project {
    std::wstring name;
    std::size_t depth;
    std::size_t instanceCount;
};

/// Everything an instance document holds, in document order. The library keeps nothing: it hands
/// each instance to a callback and destroys it when the callback returns. So these are copies.
struct Document {
    bool isInstanceDocument = false;
    std::wstring scope;
    std::vector<Project> projects;
    std::deque<KAXML::CKaInstance> instances;
    std::deque<KAXML::KaRelationshipInstance> relationships;
};

/// What a parse needs besides its input.
struct ParseSettings {
    KAXML::CKaSchema* schema;
    KAXML::IKaInstanceFactory* factory;
    unsigned int flags;
};

/// Reads an instance document from a file, or from text.
/// @throws std::runtime_error when it is XML of another kind; what the library throws.
Document ReadDocumentFile(const std::filesystem::path& file, const ParseSettings& settings);
Document ReadDocumentText(const std::wstring& xml, const ParseSettings& settings);

/// How fast a file is parsed when nothing of it is kept.
struct ParseRate {
    double megabytes;
    double megabytesPerSecond;
    int parseCount;
};

/// Parses a file often enough for a steady figure, but for no longer than it takes to notice.
ParseRate MeasureParseRate(const std::filesystem::path& file, const ParseSettings& settings);

} // namespace plant

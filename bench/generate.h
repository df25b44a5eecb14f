#pragma once

#include <cstddef>
#include <filesystem>

/// @file
/// Writes the benchmark's inputs from a fixed seed: equal arguments give equal bytes.

namespace bench {

/// What an instance document is made of.
enum class Kind {
    plant,        ///< 10 values each (texts, numbers, an array, a struct), one in ten a relationship; indented
    plantCompact, ///< the same without white space between elements
    wide,         ///< classes with 120 properties over 8 levels of bases
    arrays,       ///< arrays of numbers and of structs
    longValues,   ///< long texts
    many          ///< tiny instances
};

/// How much of it.
struct Amount {
    std::size_t bytes = 0;           ///< instances are added until the document is this long
    std::size_t length = 0;          ///< numbers in an array (structs: a tenth of it), characters of a long text
    std::size_t valuesPerWide = 120; ///< how many of the properties of wide instances have a value
};

/// Writes the schema file that documents of this kind need, with this many other classes in front.
void WriteInstanceSchema(const std::filesystem::path& file, Kind kind, std::size_t otherClasses = 0);
void WriteInstanceDocument(const std::filesystem::path& file, Kind kind, const Amount& amount);

/// Writes a schema file of ordinary classes with 10 properties each, a third of them with a base class, and
/// with custom attributes.
void WriteLargeSchema(const std::filesystem::path& file, std::size_t classCount);
/// Writes a schema of this many references, and the files they refer to beside it.
void WriteReferencingSchema(const std::filesystem::path& file, std::size_t referenceCount, std::size_t classCount);

} // namespace bench

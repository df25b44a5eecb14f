#pragma once

#include "tally.h"

#include <filesystem>

/// @file
/// The program that a client would write with a tree instead of this library: pugixml loads the file in its
/// fastest way, then each instance element becomes an object like those of the library - class name, id,
/// ends, and named values in order, which may nest. The texts of these objects are wide as well, so that
/// both sides convert the same characters. As with the library, an object is destroyed once it is finished.

namespace bench {

/// Loads the document, builds its objects and releases all. Returns the number of instances.
std::size_t PugixmlParse(const std::filesystem::path& document);
Tally PugixmlCount(const std::filesystem::path& document);

/// Loads a schema file, builds objects of its classes, properties and custom attributes, and releases all.
/// Returns the number of classes. Other files that it refers to are not read.
std::size_t PugixmlReadSchema(const std::filesystem::path& file);

} // namespace bench

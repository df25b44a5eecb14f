#pragma once

#include "document.h"

#include <ostream>

/// @file
/// The printed sections about single instances.

namespace plant {

/// The first instances of different classes, with all their values.
void PrintInstances(std::ostream& out, const Document& document, std::size_t maximum);

/// The relationships of each class, with the instances at their ends.
void PrintRelationships(std::ostream& out, const Document& document, std::size_t maximumPerClass);

} // namespace plant

#pragma once

#include "document.h"
#include "log_book.h"
#include "schemas.h"

#include <ostream>

/// @file
/// The printed sections about schemas and a document as a whole.

namespace plant {

void PrintHeading(std::ostream& out, const char* heading);

/// Each schema with its file, those it references indented below it.
void PrintSchemas(std::ostream& out, const std::vector<LoadedSchema>& schemas);

/// All classes with the number of their instances.
void PrintClasses(std::ostream& out, const std::vector<LoadedSchema>& schemas, const Document& document);

/// The tree of projects.
void PrintProjects(std::ostream& out, const Document& document);

/// How much was logged of each severity, and what was worth a note or a warning.
void PrintLog(std::ostream& out, const std::vector<LogEntry>& entries);

void PrintRate(std::ostream& out, const ParseRate& rate);

} // namespace plant

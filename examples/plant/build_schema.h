#pragma once

#include <kaxml/kaxml.h>

#include <memory>

namespace plant {

/// A small schema of a water treatment plant, built by calls alone: it references a second schema,
/// and has classes with a base class, a struct, arrays, a relationship and custom attributes.
std::unique_ptr<KAXML::CKaSchema> BuildWaterSchema();

} // namespace plant

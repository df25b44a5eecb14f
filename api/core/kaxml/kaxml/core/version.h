#pragma once

#include <kaxml/platform/export.h>

/// @file
/// The version, of the headers and of the library that is loaded.

/// @name Version of the headers
/// @{
#define KAXML_VERSION_MAJOR 0 ///< changes with the binary interface
#define KAXML_VERSION_MINOR 1 ///< new operations; before 1.0 a new binary interface too
#define KAXML_VERSION_PATCH 0 ///< mends only
/// @}

namespace KAXML {

/// The version of the library that is loaded, for example "0.1.0". Never null, lives for ever. May be
/// called on any thread.
KAXML_API const wchar_t* GetLibraryVersion() noexcept;

} // namespace KAXML

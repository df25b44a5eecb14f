#pragma once

#include <kaxml/platform/export.h>

/// @name Version of the headers
/// @{
#define KAXML_VERSION_MAJOR 0
#define KAXML_VERSION_MINOR 1
#define KAXML_VERSION_PATCH 0
/// @}

namespace KAXML {

/// The version of the library that is loaded, for example "0.1.0". Never null, lives for ever. May be
/// called on any thread.
KAXML_API const wchar_t* GetLibraryVersion() noexcept;

} // namespace KAXML

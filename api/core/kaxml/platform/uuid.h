#pragma once

#include <kaxml/platform/guid.h>

#include <string>

namespace KAXML {

/// Fills a GUID with a random (version 4) UUID from the kernel. Returns 0, or the system error.
int UuidCreate(GUID* guid) noexcept;

/// Sets `text` to 36 lowercase hexadecimal characters in groups 8-4-4-4-12. Returns 0, or an error
/// when `guid` is null.
int UuidToStringW(const GUID* guid, std::wstring& text);

} // namespace KAXML

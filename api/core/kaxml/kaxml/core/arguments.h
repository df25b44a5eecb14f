#pragma once

#include <kaxml/kaxml/core/errors.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

/// @file
/// Checks of arguments that operations share.

namespace KAXML {

/// Throws KAXMLInvalidArgument naming the operation when a pointer argument is null.
template <typename T> T* RequireNotNull(T* pointer, const wchar_t* argument, const wchar_t* operation) {
    if (pointer == nullptr)
        throw KAXMLInvalidArgument(std::wstring(L"Passed NULL ") + argument + L" to " + operation);
    return pointer;
}

/// A `long` of the interface as the 32-bit value it stands for.
/// @throws KAXMLInvalidArgument naming the operation when it is out of that range.
inline std::int32_t RequireInt32(long value, const wchar_t* operation) {
    if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
        throw KAXMLInvalidArgument(std::wstring(L"Passed a value outside the 32-bit range to ") + operation);
    return static_cast<std::int32_t>(value);
}

/// The same for an `unsigned long`.
inline std::uint32_t RequireUInt32(unsigned long value, const wchar_t* operation) {
    if (value > std::numeric_limits<std::uint32_t>::max())
        throw KAXMLInvalidArgument(std::wstring(L"Passed a value outside the 32-bit range to ") + operation);
    return static_cast<std::uint32_t>(value);
}

/// Throws KAXMLInvalidArgument naming the operation when an index is not below the count.
inline void RequireIndex(std::size_t index, std::size_t count, const wchar_t* operation) {
    if (index >= count)
        throw KAXMLInvalidArgument(std::wstring(L"Passed an index that is not below the count to ") + operation);
}

} // namespace KAXML

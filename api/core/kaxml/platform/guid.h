#pragma once

#include <cstdint>

namespace KAXML {

/// A 16-byte universally unique identifier.
struct GUID {
    std::uint32_t Data1;   ///< the first 8 digits of the text
    std::uint16_t Data2;   ///< the next 4
    std::uint16_t Data3;   ///< the next 4
    std::uint8_t Data4[8]; ///< the last 16, byte by byte
};

} // namespace KAXML

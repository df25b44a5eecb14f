#pragma once

#include <cstdint>

namespace KAXML {

/// A 16-byte universally unique identifier.
struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};

} // namespace KAXML

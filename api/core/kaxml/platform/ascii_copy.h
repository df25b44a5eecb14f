#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

/// @file
/// The short path of every conversion between UTF-8 and wide text: nearly all text is ASCII, and ASCII
/// is converted in blocks, which compilers turn into vector instructions (five times as fast as one
/// character at a time for long texts).

namespace KAXML {

/// Copies a block unless it holds more than ASCII; returns whether it did. A block takes 4 bytes at least.
template <std::size_t kCount, typename From, typename To> bool CopyAsciiBlock(const From* from, To* to) noexcept {
    using Unit = std::make_unsigned_t<From>;
    using Word = std::conditional_t<kCount * sizeof(Unit) < sizeof(std::uint64_t), std::uint32_t, std::uint64_t>;
    constexpr std::size_t kWords = kCount * sizeof(Unit) / sizeof(Word);
    constexpr Unit kAllBits = static_cast<Unit>(~Unit{0});
    constexpr Word kNotAscii = static_cast<Word>(~Word{0} / kAllBits * static_cast<Unit>(kAllBits - 0x7F));
    Unit units[kCount];
    std::memcpy(units, from, sizeof units);
    Word words[kWords];
    std::memcpy(words, from, sizeof words);
    Word all = 0;
    for (const Word word : words)
        all |= word;
    if ((all & kNotAscii) != 0)
        return false;
    To block[kCount];
    for (std::size_t i = 0; i < kCount; ++i)
        block[i] = static_cast<To>(units[i]);
    std::memcpy(to, block, sizeof block);
    return true;
}

/// Copies characters from one width to the other up to the first that is not ASCII, and returns how
/// many there were. `to` has room for `length`.
template <typename From, typename To> std::size_t CopyAscii(const From* from, std::size_t length, To* to) noexcept {
    std::size_t i = 0;
    while (length - i >= 16 && CopyAsciiBlock<16>(from + i, to + i))
        i += 16;
    if (length - i >= 8 && CopyAsciiBlock<8>(from + i, to + i))
        i += 8;
    if (length - i >= 4 && CopyAsciiBlock<4>(from + i, to + i))
        i += 4;
    for (; i < length && static_cast<std::make_unsigned_t<From>>(from[i]) < 0x80; ++i)
        to[i] = static_cast<To>(from[i]);
    return i;
}

} // namespace KAXML

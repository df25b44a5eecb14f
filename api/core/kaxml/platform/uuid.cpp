#include <kaxml/platform/uuid.h>

#include <kaxml/platform/system_error.h>

#include <cerrno>
#include <cstdint>
#include <sys/random.h>

namespace KAXML {

namespace {

// The kernel's generator: no state of ours to seed, share between threads or copy across a fork.
bool FillRandom(unsigned char* bytes, std::size_t count) noexcept {
    while (count > 0) {
        const ssize_t got = getrandom(bytes, count, 0);
        if (got < 0 && errno != EINTR)
            return false;
        if (got > 0) {
            bytes += got;
            count -= static_cast<std::size_t>(got);
        }
    }
    return true;
}

void AppendHex(std::wstring& text, std::uint32_t value, int digits) {
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        text += L"0123456789abcdef"[(value >> shift) & 0xF];
}

} // namespace

int UuidCreate(GUID* guid) noexcept {
    if (guid == nullptr)
        return EINVAL;
    const ErrnoKeeper keeper;
    unsigned char bytes[16];
    if (!FillRandom(bytes, sizeof bytes))
        return errno;
    bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0F) | 0x40);
    bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3F) | 0x80);
    guid->Data1 = static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
                  static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
    guid->Data2 = static_cast<std::uint16_t>(bytes[4] << 8 | bytes[5]);
    guid->Data3 = static_cast<std::uint16_t>(bytes[6] << 8 | bytes[7]);
    for (int i = 0; i < 8; ++i)
        guid->Data4[i] = bytes[8 + i];
    return 0;
}

int UuidToStringW(const GUID* guid, std::wstring& text) {
    if (guid == nullptr)
        return EINVAL;
    text.clear();
    text.reserve(36);
    AppendHex(text, guid->Data1, 8);
    text += L'-';
    AppendHex(text, guid->Data2, 4);
    text += L'-';
    AppendHex(text, guid->Data3, 4);
    for (int i = 0; i < 8; ++i) {
        if (i == 0 || i == 2)
            text += L'-';
        AppendHex(text, guid->Data4[i], 2);
    }
    return 0;
}

} // namespace KAXML

#include <kaxml/platform/numbers.h>

#include <kaxml/platform/system_error.h>

#include <cerrno>
#include <charconv>
#include <clocale>
#include <cwchar>
#include <limits>
#include <locale.h>
#include <new>

namespace KAXML {

namespace {

// Kept for the life of the process: the C locale of the runtime library costs nothing.
locale_t CLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    if (locale == nullptr)
        throw std::bad_alloc();
    return locale;
}

} // namespace

ParsedNumber<std::int32_t> ParseInt32(const wchar_t* text) {
    const locale_t locale = CLocale();
    const ErrnoKeeper keeper;
    errno = 0;
    const long long value = wcstoll_l(text, nullptr, 10, locale);
    if (value > std::numeric_limits<std::int32_t>::max())
        return {std::numeric_limits<std::int32_t>::max(), ERANGE};
    if (value < std::numeric_limits<std::int32_t>::min())
        return {std::numeric_limits<std::int32_t>::min(), ERANGE};
    return {static_cast<std::int32_t>(value), errno};
}

ParsedNumber<double> ParseDouble(const wchar_t* text) {
    const locale_t locale = CLocale();
    const ErrnoKeeper keeper;
    errno = 0;
    const double value = wcstod_l(text, nullptr, locale);
    return {value, errno};
}

std::uint32_t ParseUInt32(const wchar_t* text, bool& digitsRead) {
    const locale_t locale = CLocale();
    const ErrnoKeeper keeper;
    wchar_t* end = nullptr;
    const unsigned long long value = wcstoull_l(text, &end, 10, locale);
    digitsRead = end != text;
    return static_cast<std::uint32_t>(value);
}

std::wstring FormatInt(long long value) {
    char digits[24];
    const auto result = std::to_chars(digits, digits + sizeof digits, value);
    return std::wstring(digits, result.ptr);
}

std::wstring FormatDouble(double value) {
    char digits[40];
    const auto result = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 15);
    return std::wstring(digits, result.ptr);
}

} // namespace KAXML

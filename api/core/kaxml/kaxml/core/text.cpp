#include <kaxml/kaxml/core/text.h>

#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/tag_coding.h>
#include <kaxml/platform/char_class.h>
#include <kaxml/platform/numbers.h>
#include <kaxml/platform/uuid.h>
#include <kaxml/platform/wide_text.h>

namespace KAXML {

namespace {

const wchar_t* MarkupEntity(char32_t unit) noexcept {
    switch (unit) {
    case U'&':
        return L"&amp;";
    case U'>':
        return L"&gt;";
    case U'<':
        return L"&lt;";
    case U'"':
        return L"&quot;";
    case U'\'':
        return L"&apos;";
    default:
        return nullptr;
    }
}

void AppendCharacterReference(std::wstring& output, char32_t unit) {
    output += L"&#x";
    int shift = 12;
    while (shift > 0 && (unit >> shift) == 0)
        shift -= 4;
    for (; shift >= 0; shift -= 4)
        output += L"0123456789ABCDEF"[(unit >> shift) & 0xF];
    output += L';';
}

void AppendEscaped(std::wstring& output, char32_t unit) {
    if (const wchar_t* const entity = MarkupEntity(unit))
        output += entity;
    else if ((unit >= 32 && unit <= 126) || unit == 9 || unit == 10 || unit == 13)
        output += static_cast<wchar_t>(unit);
    else if (unit < 32 || IsSurrogate(unit) || unit > 0xFFFD)
        output += L'?';
    else
        AppendCharacterReference(output, unit);
}

} // namespace

std::wstring ToWString(long value) { return FormatInt(RequireInt32(value, L"ToWString")); }
std::wstring ToWString(int value) { return FormatInt(value); }
std::wstring ToWString(const char* text) { return text == nullptr ? std::wstring() : WideFromUtf8(text); }

std::wstring ToWString(const GUID* guid) {
    std::wstring text;
    return UuidToStringW(guid, text) == 0 ? text : std::wstring();
}

void ConvertToXmlString(const wchar_t* text, std::wstring& output) {
    const std::wstring_view source(RequireNotNull(text, L"text", L"ConvertToXmlString"));
    std::wstring escaped;
    escaped.reserve(source.size());
    ForEachUtf16Unit(source, [&escaped](char32_t unit) { AppendEscaped(escaped, unit); });
    output.swap(escaped);
}

int EncodeToValidXmlTag(std::wstring& name) { return EncodeTag(name); }
int DecodeFromValidXmlTag(std::wstring& name) { return DecodeTag(name); }

} // namespace KAXML

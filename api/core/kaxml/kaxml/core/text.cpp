#include <kaxml/kaxml/core/text.h>

#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/tag_coding.h>
#include <kaxml/kaxml/core/xml_escaping.h>
#include <kaxml/platform/numbers.h>
#include <kaxml/platform/uuid.h>
#include <kaxml/platform/wide_text.h>

namespace KAXML {

std::wstring ToWString(long value) { return FormatInt(RequireInt32(value, L"ToWString")); }
std::wstring ToWString(int value) { return FormatInt(value); }
std::wstring ToWString(const char* text) { return text == nullptr ? std::wstring() : WideFromUtf8(text); }

std::wstring ToWString(const GUID* guid) {
    std::wstring text;
    return UuidToStringW(guid, text) == 0 ? text : std::wstring();
}

void ConvertToXmlString(const wchar_t* text, std::wstring& output) {
    const std::wstring_view source(RequireNotNull(text, L"text", L"ConvertToXmlString"));
    output = EscapeForXml(source);
}

int EncodeToValidXmlTag(std::wstring& name) { return EncodeTag(name); }
int DecodeFromValidXmlTag(std::wstring& name) { return DecodeTag(name); }

} // namespace KAXML

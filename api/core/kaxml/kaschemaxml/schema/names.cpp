#include <kaxml/kaschemaxml/schema/names.h>

#include <kaxml/kaschemaxml/schema/class.h>
#include <kaxml/kaschemaxml/schema/schema.h>
#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/platform/char_class.h>
#include <kaxml/platform/numbers.h>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace KAXML {

namespace {

constexpr std::wstring_view kPrimitiveTypes[] = {L"string",  L"boolean",  L"double", L"int",
                                                 L"point3d", L"dateTime", L"binary", L"long"};

constexpr wchar_t kParseVersionLocation[] = L"CKaSchema::ParseVersionString";
constexpr wchar_t kVersionFormat[] = L" Format is MM.mm where MM is major version and mm is minor version.";

int InvalidName(int throwOnError, const std::wstring& message) {
    if (throwOnError != 0)
        throw KAXMLDomainError(message);
    return 0;
}

[[noreturn]] void ThrowVersionError(std::wstring_view version, const wchar_t* problem) {
    throw KAXMLFormatError(Concat(L"CKaSchema::SetVersionString... '", version, L"' ", problem, kVersionFormat));
}

std::uint32_t ParseVersionPart(const std::wstring& part, std::wstring_view version, const wchar_t* problem) {
    bool digitsRead = false;
    const std::uint32_t number = ParseUInt32(part.c_str(), digitsRead);
    if (!digitsRead)
        ThrowVersionError(version, problem);
    return number;
}

bool IsVersionPartLength(std::size_t length) { return length >= 1 && length <= 3; }

void AppendAtLeastTwoDigits(std::wstring& text, std::uint32_t number) {
    const std::wstring digits = FormatInt(static_cast<std::int32_t>(number));
    if (digits.size() < 2)
        text += L'0';
    text += digits;
}

} // namespace

int NameIsValid(const wchar_t* name, int throwOnError, std::wstring_view kind) {
    if (name == nullptr)
        throw KAXMLLogicError(Concat(kind, L" names cannot be NULL!"));
    const auto invalid = [throwOnError, kind](const auto&... problem) {
        return InvalidName(throwOnError, Concat(kind, problem...));
    };
    const std::wstring_view text(name);
    if (text.empty())
        return invalid(L" names cannot be blank!");
    if (text[0] != L'_' && !IsLetter(text[0]))
        return invalid(L" names must begin with a letter or '_': '", text, L"'");
    const auto allowed = [](wchar_t c) { return c == L'_' || IsLetterOrDigit(c); };
    if (!std::all_of(text.begin(), text.end(), allowed))
        return invalid(L" names can only contain alpha-numeric characters or '_': '", text, L"'");
    return 1;
}

int CKaClass::KaNameIsValid(const wchar_t* name, int throwOnError) {
    return NameIsValid(name, throwOnError, kClassNameKind);
}

int CKaSchema::SchemaNameIsValid(const wchar_t* name, int throwOnError) {
    return NameIsValid(name, throwOnError, kSchemaNameKind);
}

void CKaSchema::ParseVersionString(const wchar_t* version, std::uint32_t* major, std::uint32_t* minor) {
    if (major == nullptr || minor == nullptr)
        throw KAXMLLogicError(L"pMinor and pMajor must be non-NULL", kParseVersionLocation);
    if (version == nullptr || *version == L'\0')
        throw KAXMLLogicError(std::wstring(L"Version string cannot be NULL or empty!") + kVersionFormat,
                              kParseVersionLocation);
    const std::wstring_view text(version);
    const std::size_t stop = text.find(L'.');
    if (stop == std::wstring_view::npos)
        ThrowVersionError(text, L"does not contain a '.'!");
    if (!IsVersionPartLength(stop))
        ThrowVersionError(text, L"does not have 1-3 numbers before the '.'!");
    if (!IsVersionPartLength(text.size() - stop - 1))
        ThrowVersionError(text, L"does not have 1-3 numbers after the '.'!");
    const std::wstring majorPart(text.substr(0, stop));
    const std::wstring minorPart(text.substr(stop + 1));
    *major = ParseVersionPart(majorPart, text, L"The characters before the '.' must be numeric!");
    *minor = ParseVersionPart(minorPart, text, L"The characters after the '.' must be numeric!");
}

void CKaSchema::FormatVersionString(std::wstring& version, std::uint32_t major, std::uint32_t minor) {
    std::wstring text;
    AppendAtLeastTwoDigits(text, major);
    text += L'.';
    AppendAtLeastTwoDigits(text, minor);
    version.swap(text);
}

void CKaSchema::ParseKaClassName(const wchar_t* fullName, std::wstring& prefix, std::wstring& className) {
    const std::wstring_view text(RequireNotNull(fullName, L"fullName", L"CKaSchema::ParseKaClassName"));
    const std::size_t colon = text.find(L':');
    if (colon == 0)
        throw KAXMLFormatError(Concat(L"KaClass name '", text, L"'cannot begin with ':'."));
    const bool hasPrefix = colon != std::wstring_view::npos;
    std::wstring newPrefix(hasPrefix ? text.substr(0, colon) : std::wstring_view());
    std::wstring newName(hasPrefix ? text.substr(colon + 1) : text);
    prefix.swap(newPrefix);
    className.swap(newName);
}

int CKaSchema::IsPrimitiveType(const wchar_t* typeName) {
    if (typeName == nullptr)
        throw KAXMLInvalidArgument(L"Passed typeName to CKaSchema::IsPrimitiveType");
    const std::wstring_view text(typeName);
    return std::find(std::begin(kPrimitiveTypes), std::end(kPrimitiveTypes), text) != std::end(kPrimitiveTypes);
}

} // namespace KAXML

#include <kaxml/kaxml/core/identifiers.h>

#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/core/text.h>
#include <kaxml/platform/environment.h>
#include <kaxml/platform/uuid.h>

namespace KAXML {

namespace {

std::wstring SourceLocation(int line) { return FormatText(L"%S: (%s)", {__FILE__, ToWString(line)}); }

} // namespace

void GenerateGUID(GUID* guid) {
    if (UuidCreate(RequireNotNull(guid, L"guid", L"GenerateGUID")) != 0)
        throw KAXMLRuntimeError(L"Failed to generate GUID", SourceLocation(__LINE__));
}

std::wstring CreateGuid() {
    GUID guid;
    if (UuidCreate(&guid) != 0)
        throw KAXMLRuntimeError(L"Failed to create a new GUID!");
    std::wstring text;
    if (UuidToStringW(&guid, text) != 0)
        throw KAXMLRuntimeError(L"Failed to convert GUID to string!");
    return text;
}

void GenerateKaInstanceXMLIdentifier(const wchar_t* className, long number, std::wstring& output) {
    if (className == nullptr)
        throw KAXMLInvalidArgument(L"Passed NULL className into GenerateKaInstanceXMLIdentifier");
    const int id = RequireInt32(number, L"GenerateKaInstanceXMLIdentifier");
    std::wstring identifier(className);
    EncodeToValidXmlTag(identifier);
    identifier += L'-';
    if (id >= 1) {
        identifier += L"VelInstanceID-";
        identifier += ToWString(id);
    } else {
        GUID guid;
        GenerateGUID(&guid);
        identifier += ToWString(&guid);
    }
    output.swap(identifier);
}

void CreateTempFileName(const wchar_t* suffix, std::wstring& output) {
    RequireNotNull(suffix, L"suffix", L"CreateTempFileName");
    std::wstring name = GetTempPathW();
    name += kPathSeparator;
    name += CreateGuid();
    name += suffix;
    output.swap(name);
}

std::wstring CGUIDGenerator::GetNextID() {
    GUID guid;
    std::wstring text;
    if (UuidCreate(&guid) != 0 || UuidToStringW(&guid, text) != 0 || text.empty())
        throw KAXMLRuntimeError(L"CGUIDGenerator failed to generate a GUID.");
    return text;
}

} // namespace KAXML

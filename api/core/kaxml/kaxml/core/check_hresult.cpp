#include <kaxml/kaxml/core/check_hresult.h>

#include <kaxml/kaxml/core/errors.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/platform/console.h>

namespace KAXML {

namespace {

constexpr std::size_t kMessageBufferSize = 1024;

[[noreturn]] void Fail(const wchar_t* callText, const char* file, int line) {
    // The call text is appended, not formatted: it holds characters of its own.
    std::wstring message = FormatText(L"Error at %S (%i): ", {file, line}) + callText;
    if (message.size() > kMessageBufferSize - 1)
        message.resize(kMessageBufferSize - 1);
    WriteStandardOutput(message);
    throw KAXMLRuntimeError(message, std::wstring());
}

} // namespace

void CheckHResult(HRESULT status, const wchar_t* callText, const char* file, int line) {
    if (status != S_OK)
        Fail(callText, file, line);
}

} // namespace KAXML

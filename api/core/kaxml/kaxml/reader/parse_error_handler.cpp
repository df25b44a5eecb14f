#include <kaxml/kaxml/reader/parse_error_handler.h>

#include <kaxml/kaxml/core/errors.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/core/identifiers.h>
#include <kaxml/kaxml/core/text.h>
#include <kaxml/platform/environment.h>
#include <kaxml/platform/file.h>
#include <kaxml/platform/wide_text.h>

namespace KAXML {

namespace {

constexpr char kKeepVariable[] = "DO_NOT_DELETE_KAINSTANCEXML_TEMP_FILE";

void RaiseIfFailed(HRESULT status) {
    if (status < 0)
        throw _com_error(status, L"The parser gives no position for its error");
}

std::wstring ReportOf(ISAXLocator* locator, const wchar_t* message) {
    int line = 0;
    int column = 0;
    RaiseIfFailed(locator->getLineNumber(&line));
    RaiseIfFailed(locator->getColumnNumber(&column));
    std::wstring report = Concat(L"SAX Parser failed at line ", ToWString(line), L", column ", ToWString(column));
    if (message != nullptr && *message != L'\0')
        report += Concat(L" with error: ", message);
    return report;
}

// Returns the path of the dump.
std::wstring WriteDump(const std::wstring& report, const wchar_t* text) {
    std::wstring fileName;
    CreateTempFileName(L".kainstance.xml", fileName);
    const std::string header =
        Utf8FromWide(FormatText(L"<!-- %s.  IGNORE THIS LINE WHEN COUNTING LINE NUMBERS -->\n", {report}));
    switch (WriteNewPrivateFile(fileName, header, text)) {
    case NewFileResult::cannotCreate:
        throw KAXMLRuntimeError(Concat(L"Cannot create temp file for KaInstanceXML. filename='", fileName, L"'"));
    case NewFileResult::cannotWrite:
        throw KAXMLRuntimeError(Concat(L"Failed while writing KaInstanceXML to temp file. filename='", fileName, L"'"));
    case NewFileResult::written:
        break;
    }
    return fileName;
}

} // namespace

SAXKaInstanceUpdateErrorHandler::SAXKaInstanceUpdateErrorHandler(const wchar_t* xmlSource, int isUrl, void* context,
                                                                 parseErrorCallback callback)
    : m_xmlSource(xmlSource), m_isUrl(isUrl), m_context(context), m_parseErrorCallback(callback) {}

SAXKaInstanceUpdateErrorHandler::~SAXKaInstanceUpdateErrorHandler() = default;

std::wstring SAXKaInstanceUpdateErrorHandler::WhereToFindTheText(const std::wstring& report) const {
    if (m_isUrl != 0)
        return Concat(L". If DO_NOT_DELETE_KAINSTANCEXML_TEMP_FILE environment variable is set, you can find the "
                      L"offending xml message at: ",
                      m_xmlSource);
    std::wstring value;
    if (!GetEnvironmentVariableW(kKeepVariable, value))
        return L". Set environment variable DO_NOT_DELETE_KAINSTANCEXML_TEMP_FILE to retain a dump of the offending "
               L"xml message";
    return L". You can find the offending xml message in: " + WriteDump(report, m_xmlSource);
}

HRESULT SAXKaInstanceUpdateErrorHandler::fatalError(ISAXLocator* locator, const wchar_t* message, HRESULT) {
    std::wstring report = ReportOf(locator, message);
    report += WhereToFindTheText(report);
    if (m_parseErrorCallback != nullptr)
        m_parseErrorCallback(report.c_str(), m_context);
    return E_FAIL;
}

} // namespace KAXML

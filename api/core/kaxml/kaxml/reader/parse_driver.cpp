#include <kaxml/kaxml/reader/parse_driver.h>

#include <kaxml/kaxml/core/arguments.h>
#include <kaxml/kaxml/core/format.h>
#include <kaxml/kaxml/core/log_message.h>
#include <kaxml/kaxml/core/text.h>
#include <kaxml/kaxml/reader/instance_handlers.h>
#include <kaxml/kaxml/reader/parse_error_handler.h>

namespace KAXML {

namespace {

void CheckStatus(HRESULT status, const std::wstring& operation) {
    if (status < 0)
        throw KAXMLRuntimeError(Concat(operation, L" with return status of: ", ToWString(status)));
}

void Parse(ISAXXMLReader& reader, const ParseRequest& request) {
    const bool isUrl = request.isUrl != 0;
    const HRESULT status = isUrl ? reader.parseURL(request.xmlSource) : reader.parse(request.xmlSource);
    if (status >= 0)
        return;
    CheckStatus(status, Concat(L"ParseKaInstanceXML: Failed to parse  ", isUrl ? request.xmlSource : L"", L" "));
}

std::wstring TextOf(const _com_error& error) {
    std::wstring text;
    for (const std::wstring_view part : {error.ErrorMessage(), error.Description(), error.Source()})
        if (!part.empty())
            text += Concat(part, L". ");
    return text;
}

void RunWithHandlers(const ParseRequest& request, ReaderFactory createReader) {
    std::unique_ptr<ISAXXMLReader> reader;
    CheckStatus(createReader(reader), L"ParseKaInstanceXML failed CoCreateInstance");
    CKAXMLSAXContentHandler contentHandler(request.schema, request.context, request.callbacks, request.flags);
    contentHandler.SetKaInstanceFactory(request.factory);
    RequireNotNull(request.xmlSource, L"xmlSource", L"ParseKaInstanceXML");
    contentHandler.GetStateStack().Push(std::make_unique<KaInstanceXMLHandler>(&contentHandler));
    CheckStatus(reader->putContentHandler(&contentHandler), L"ParseKaInstanceXML failed putContentHandler");
    reader->putCharactersSwitch(&contentHandler.WantsCharacters());
    SAXKaInstanceUpdateErrorHandler errorHandler(request.xmlSource, request.isUrl, request.context, request.parseError);
    CheckStatus(reader->putErrorHandler(&errorHandler), L"ParseKaInstanceXML failed putErrorHandler");
    Parse(*reader, request);
    LogFormatted(LOG_INFO, L"Imported instances: %d", {contentHandler.GetImportedCount()});
}

} // namespace

void RunParse(const ParseRequest& request, ReaderFactory createReader) {
    try {
        RunWithHandlers(request, createReader);
    } catch (const _com_error& error) {
        throw KAXMLRuntimeError(L"ParseKaInstanceXML: COM Error: " + TextOf(error));
    }
}

int ParseKaInstanceXML(int isUrl, const wchar_t* xmlSource, CKaSchema* schema, void* context,
                       kaInstanceXMLParseBegin begin, parsedKaInstanceCallback instance,
                       parsedKaRelationshipCallback relationship, projectElementCallback project,
                       kaInstanceXMLParseEnd end, parseErrorCallback error, IKaInstanceFactory* factory,
                       unsigned int flags) {
    ParseRequest request;
    request.isUrl = isUrl;
    request.xmlSource = xmlSource;
    request.schema = schema;
    request.context = context;
    request.callbacks = {begin, instance, relationship, project, end};
    request.parseError = error;
    request.factory = factory;
    request.flags = flags;
    RunParse(request, &CreateSAXXMLReader);
    return 0;
}

} // namespace KAXML

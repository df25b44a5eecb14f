#pragma once

#include <kaxml/kaxml/reader/content_handler.h>
#include <kaxml/platform/sax.h>

namespace KAXML {

/// What ParseKaInstanceXML was asked for.
struct ParseRequest {
    int isUrl = 0;
    const wchar_t* xmlSource = nullptr;
    CKaSchema* schema = nullptr;
    void* context = nullptr;
    ParseCallbacks callbacks;
    parseErrorCallback parseError = nullptr;
    IKaInstanceFactory* factory = nullptr;
    unsigned int flags = 0;
};

/// Makes the streaming reader; see CreateSAXXMLReader.
using ReaderFactory = HRESULT (*)(std::unique_ptr<ISAXXMLReader>& reader);

/// Wires handlers and reader together and runs the parse.
/// @throws as ParseKaInstanceXML; KAXMLRuntimeError with the status when the reader reports one.
void RunParse(const ParseRequest& request, ReaderFactory createReader);

} // namespace KAXML

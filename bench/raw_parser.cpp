#include "raw_parser.h"

#include <fstream>
#include <libxml/parser.h>
#include <memory>
#include <stdexcept>

namespace bench {
namespace {

void OnStart(void*, const xmlChar*, const xmlChar*, const xmlChar*, int, const xmlChar**, int, int, const xmlChar**) {}
void OnEnd(void*, const xmlChar*, const xmlChar*, const xmlChar*) {}
void OnText(void*, const xmlChar*, int) {}
void OnComment(void*, const xmlChar*) {}
void OnInstruction(void*, const xmlChar*, const xmlChar*) {}

// With one function for both kinds of text the parser does not try to judge which white space counts.
xmlSAXHandler EmptyHandlers() {
    xmlSAXHandler handlers{};
    handlers.initialized = XML_SAX2_MAGIC;
    handlers.startElementNs = OnStart;
    handlers.endElementNs = OnEnd;
    handlers.characters = OnText;
    handlers.ignorableWhitespace = OnText;
    handlers.cdataBlock = OnText;
    handlers.comment = OnComment;
    handlers.processingInstruction = OnInstruction;
    return handlers;
}

int OnRead(void* file, char* buffer, int capacity) {
    return static_cast<int>(static_cast<std::filebuf*>(file)->sgetn(buffer, capacity));
}

struct FreeContext {
    void operator()(xmlParserCtxt* context) const noexcept { xmlFreeParserCtxt(context); }
};

} // namespace

void RawParse(const std::filesystem::path& path) {
    std::filebuf file;
    if (file.open(path, std::ios::in | std::ios::binary) == nullptr)
        throw std::runtime_error("cannot read " + path.string());
    xmlSAXHandler handlers = EmptyHandlers();
    const std::unique_ptr<xmlParserCtxt, FreeContext> context(
        xmlCreateIOParserCtxt(&handlers, nullptr, OnRead, nullptr, &file, XML_CHAR_ENCODING_UTF8));
    if (!context)
        throw std::bad_alloc();
    xmlCtxtUseOptions(context.get(), XML_PARSE_HUGE | XML_PARSE_NOENT);
    if (xmlParseDocument(context.get()) != 0)
        throw std::runtime_error("the raw parser refuses " + path.string());
}

} // namespace bench

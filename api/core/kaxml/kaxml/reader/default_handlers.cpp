#include <kaxml/kaxml/reader/default_handlers.h>

namespace KAXML {

namespace {

HRESULT NoSuchInterface(void** object) noexcept {
    if (object != nullptr)
        *object = nullptr;
    return E_NOINTERFACE;
}

} // namespace

HRESULT CDefaultSAXContentHandler::QueryInterface(const void*, void** object) { return NoSuchInterface(object); }
CDefaultSAXContentHandler::~CDefaultSAXContentHandler() = default;

HRESULT CDefaultErrorHandler::QueryInterface(const void*, void** object) { return NoSuchInterface(object); }
CDefaultErrorHandler::~CDefaultErrorHandler() = default;

} // namespace KAXML

#pragma once

#include <kaxml/platform/sax.h>

namespace KAXML {

/// A content handler that does nothing. Not reference-counted: it lives as long as its owner keeps
/// it.
class CDefaultSAXContentHandler : public ISAXContentHandler {
  public:
    HRESULT QueryInterface(const void* interfaceId, void** object) override;
    unsigned long AddRef() override { return 0; }
    unsigned long Release() override { return 0; }
    HRESULT putDocumentLocator(ISAXLocator*) override { return S_OK; }
    HRESULT startDocument() override { return S_OK; }
    HRESULT endDocument() override { return S_OK; }
    HRESULT startPrefixMapping(const wchar_t*, int, const wchar_t*, int) override { return S_OK; }
    HRESULT endPrefixMapping(const wchar_t*, int) override { return S_OK; }
    HRESULT raw_startElement(const XmlName&, ISAXAttributes*) override { return S_OK; }
    HRESULT raw_endElement(const XmlName&) override { return S_OK; }
    HRESULT raw_characters(const wchar_t*, std::size_t) override { return S_OK; }
    HRESULT ignorableWhitespace(const wchar_t*, std::size_t) override { return S_OK; }
    HRESULT processingInstruction(const wchar_t*, int, const wchar_t*, int) override { return S_OK; }
    HRESULT skippedEntity(const wchar_t*, int) override { return S_OK; }
    virtual ~CDefaultSAXContentHandler();
};

/// An error handler that lets everything go on. Not reference-counted.
class CDefaultErrorHandler : public ISAXErrorHandler {
  public:
    HRESULT QueryInterface(const void* interfaceId, void** object) override;
    unsigned long AddRef() override { return 0; }
    unsigned long Release() override { return 0; }
    HRESULT error(ISAXLocator*, const wchar_t*, HRESULT) override { return S_OK; }
    HRESULT fatalError(ISAXLocator*, const wchar_t*, HRESULT) override { return S_OK; }
    HRESULT ignorableWarning(ISAXLocator*, const wchar_t*, HRESULT) override { return S_OK; }
    virtual ~CDefaultErrorHandler();
};

} // namespace KAXML

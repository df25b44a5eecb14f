#pragma once

#include <kaxml/platform/com_error.h>
#include <kaxml/platform/xml_name.h>

#include <memory>
#include <string>

/// @file
/// The streaming XML service: the parser calls a content handler for every start tag, end tag and
/// run of character data, and an error handler when it refuses the document.

namespace KAXML {

class ISAXLocator;

/// Attributes of the current start tag; valid during the call that receives them. Namespace
/// declarations are not among them.
class ISAXAttributes {
  public:
    /// Sets `value` to the value of the attribute with this namespace and local name. Returns
    /// S_OK, or E_INVALIDARG when there is none, and then leaves `value` alone.
    virtual HRESULT getValueFromName(const wchar_t* uri, int uriLength, const wchar_t* localName, int localNameLength,
                                     std::wstring& value) = 0;

  protected:
    ~ISAXAttributes() = default;
};

/// Receives a document. Texts come as pointer and length, names with both forms. A status below 0 stops
/// the parse; so does an exception, which leaves the parse call unchanged.
class ISAXContentHandler {
  public:
    virtual HRESULT QueryInterface(const void* interfaceId, void** object) = 0;
    virtual unsigned long AddRef() = 0;
    virtual unsigned long Release() = 0;
    virtual HRESULT putDocumentLocator(ISAXLocator* locator) = 0;
    virtual HRESULT startDocument() = 0;
    virtual HRESULT endDocument() = 0;
    virtual HRESULT startPrefixMapping(const wchar_t* prefix, int prefixLength, const wchar_t* uri, int uriLength) = 0;
    virtual HRESULT endPrefixMapping(const wchar_t* prefix, int prefixLength) = 0;
    virtual HRESULT raw_startElement(const XmlName& name, ISAXAttributes* attributes) = 0;
    virtual HRESULT raw_endElement(const XmlName& name) = 0;
    virtual HRESULT raw_characters(const wchar_t* text, std::size_t length) = 0;
    virtual HRESULT ignorableWhitespace(const wchar_t* text, std::size_t length) = 0;
    virtual HRESULT processingInstruction(const wchar_t* target, int targetLength, const wchar_t* data,
                                          int dataLength) = 0;
    virtual HRESULT skippedEntity(const wchar_t* name, int nameLength) = 0;

  protected:
    ~ISAXContentHandler() = default;
};

/// The position of an event or error; lines and columns count from 1.
class ISAXLocator {
  public:
    virtual HRESULT getLineNumber(int* line) = 0;
    virtual HRESULT getColumnNumber(int* column) = 0;

  protected:
    ~ISAXLocator() = default;
};

/// Is told of a document's errors; a failing answer to fatalError stops the parse.
class ISAXErrorHandler {
  public:
    virtual HRESULT QueryInterface(const void* interfaceId, void** object) = 0;
    virtual unsigned long AddRef() = 0;
    virtual unsigned long Release() = 0;
    virtual HRESULT error(ISAXLocator* locator, const wchar_t* message, HRESULT status) = 0;
    virtual HRESULT fatalError(ISAXLocator* locator, const wchar_t* message, HRESULT status) = 0;
    virtual HRESULT ignorableWarning(ISAXLocator* locator, const wchar_t* message, HRESULT status) = 0;

  protected:
    ~ISAXErrorHandler() = default;
};

/// A streaming reader. It owns neither handler; both must outlive every parse call.
class ISAXXMLReader {
  public:
    virtual ~ISAXXMLReader() = default;
    virtual HRESULT putContentHandler(ISAXContentHandler* handler) = 0;
    virtual HRESULT putErrorHandler(ISAXErrorHandler* handler) = 0;
    /// Lets the content handler switch character data off and on between two tags: while `isWanted`
    /// points to false, it is checked but not delivered. Null, as at first: all is delivered.
    virtual void putCharactersSwitch(const bool* isWanted) = 0;
    /// Parses null-terminated wide text. Character data reaches the content handler as one piece
    /// per run between two tags.
    /// @throws _com_error after a fatal error, with the parser's message and position.
    virtual HRESULT parse(const wchar_t* text) = 0;
    /// Parses a file named by a path or a `file:` URL.
    /// @throws _com_error after a fatal error, or when the file cannot be opened (then the error
    ///         handler is not called).
    virtual HRESULT parseURL(const wchar_t* url) = 0;
};

/// Creates the reader. Returns S_OK, or the status of the failure with `reader` empty.
HRESULT CreateSAXXMLReader(std::unique_ptr<ISAXXMLReader>& reader);

} // namespace KAXML

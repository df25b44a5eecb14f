#pragma once

#include <kaxml/kaxml/reader/default_handlers.h>
#include <kaxml/kaxml/reader/parse.h>

namespace KAXML {

/// Composes the report of a refused document, hands it to the client's error callback and, when the
/// environment asks for it, dumps a document given as text into a temporary file.
class SAXKaInstanceUpdateErrorHandler : public CDefaultErrorHandler {
  public:
    /// @param xmlSource  the document's text or URL; must outlive the handler.
    SAXKaInstanceUpdateErrorHandler(const wchar_t* xmlSource, int isUrl, void* context, parseErrorCallback callback);
    ~SAXKaInstanceUpdateErrorHandler() override;

    /// Reports and answers E_FAIL. @throws KAXMLRuntimeError when the dump cannot be written (the
    /// callback is then not called); what the callback throws.
    HRESULT fatalError(ISAXLocator* locator, const wchar_t* message, HRESULT status) override;

  private:
    std::wstring WhereToFindTheText(const std::wstring& report) const;

    const wchar_t* m_xmlSource;
    int m_isUrl;
    void* m_context;
    parseErrorCallback m_parseErrorCallback;
};

} // namespace KAXML

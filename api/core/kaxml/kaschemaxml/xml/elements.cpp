#include <kaxml/kaschemaxml/xml/elements.h>

#include <kaxml/kaschemaxml/schema/format_names.h>
#include <kaxml/kaxml/core/check_hresult.h>

#include <algorithm>

namespace KAXML {

namespace {

constexpr std::wstring_view kWhiteSpace = L"\t\n\r ";

wchar_t LowerAscii(wchar_t c) noexcept { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; }

} // namespace

IXMLDOMElement* CreateElement(IXMLDOMDocument2* document, IXMLDOMNode* parent, std::wstring_view name,
                              std::wstring_view namespaceUri) {
    IXMLDOMNode* const node = document->createNode(NODE_ELEMENT, name, namespaceUri);
    IXMLDOMElement* element = nullptr;
    CHECK_HRESULT(node->QueryInterface(&element),
                  L"pNode.QueryInterface(MSXML2::IID_IXMLDOMElement, (void**)&pElement)");
    IXMLDOMNode* const appended = parent->appendChild(element);
    IXMLDOMElement* appendedElement = nullptr;
    CHECK_HRESULT(appended->QueryInterface(&appendedElement),
                  L"pAppendedNode->QueryInterface(MSXML2::IID_IXMLDOMElement, (void**)&pAppendedElement)");
    return appendedElement;
}

IXMLDOMElement* CreateSchemaElement(IXMLDOMDocument2* document, IXMLDOMNode* parent, std::wstring_view name) {
    static constexpr std::wstring_view uri = KAXML_NAMESPACE_URI;
    return CreateElement(document, parent, name, uri);
}

void AppendText(IXMLDOMDocument2* document, IXMLDOMNode* parent, std::wstring_view text) {
    if (!text.empty())
        parent->appendChild(document->createTextNode(text));
}

bool IsTrue(std::wstring_view text) noexcept { return EqualsIgnoringCase(text, KAXML_TRUE); }

bool EqualsIgnoringCase(std::wstring_view a, std::wstring_view b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](wchar_t x, wchar_t y) { return LowerAscii(x) == LowerAscii(y); });
}

const wchar_t* TrueOrFalse(int flag) noexcept { return flag != 0 ? KAXML_TRUE : KAXML_FALSE; }

std::wstring_view Trimmed(std::wstring_view text) noexcept {
    const std::size_t first = text.find_first_not_of(kWhiteSpace);
    if (first == std::wstring_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

bool IsBlank(std::wstring_view text) noexcept { return text.find_first_not_of(kWhiteSpace) == std::wstring_view::npos; }

} // namespace KAXML

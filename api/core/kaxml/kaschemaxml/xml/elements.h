#pragma once

#include <kaxml/platform/dom.h>

#include <string>
#include <string_view>

/// @file
/// What readers and writers of elements share.

namespace KAXML {

/// Makes an element in a namespace and appends it to the parent.
/// @throws _com_error when XML allows no such name or the tree would nest too deep.
IXMLDOMElement* CreateElement(IXMLDOMDocument2* document, IXMLDOMNode* parent, std::wstring_view name,
                              std::wstring_view namespaceUri);

/// The same in the namespace of schema files.
IXMLDOMElement* CreateSchemaElement(IXMLDOMDocument2* document, IXMLDOMNode* parent, std::wstring_view name);

/// Appends a text node. An empty text makes none.
void AppendText(IXMLDOMDocument2* document, IXMLDOMNode* parent, std::wstring_view text);

/// Whether the text is "True", ignoring the letter case of ASCII.
bool IsTrue(std::wstring_view text) noexcept;

/// Whether two texts are the same, ignoring the letter case of ASCII.
bool EqualsIgnoringCase(std::wstring_view a, std::wstring_view b) noexcept;

/// The texts of flags as they are written.
const wchar_t* TrueOrFalse(int flag) noexcept;

/// The text without tab, line feed, carriage return and blank at its ends.
std::wstring_view Trimmed(std::wstring_view text) noexcept;

/// Whether there is nothing but tab, line feed, carriage return and blank.
bool IsBlank(std::wstring_view text) noexcept;

} // namespace KAXML

#pragma once

#include <kaxml/platform/xml_input.h>
#include <kaxml/platform/xml_name.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// @file
/// The streaming parser under both readers, behind one file so that another parser could take its
/// place. It accepts XML 1.0 with namespaces, without a document type declaration.

namespace KAXML {

/// Where and why a document was refused. Lines and columns count from 1.
struct XmlError {
    int line = 0;
    int column = 0;
    std::wstring message;
};

/// Attributes and namespace declarations of one start tag, valid during its event.
class XmlStartTag {
  public:
    virtual std::size_t AttributeCount() const noexcept = 0;
    virtual const XmlName& AttributeName(std::size_t index) const = 0;
    /// The value as UTF-8, references resolved.
    virtual std::string_view AttributeValue(std::size_t index) const noexcept = 0;
    virtual std::size_t DeclarationCount() const noexcept = 0;
    /// The declared prefix as UTF-8, empty for the default namespace.
    virtual std::string_view DeclarationPrefix(std::size_t index) const noexcept = 0;
    virtual std::string_view DeclarationUri(std::size_t index) const noexcept = 0;

  protected:
    ~XmlStartTag() = default;
};

/// Receives the events of a document in order. Character data may come in any number of pieces.
/// Anything an operation throws stops the parse and leaves ParseXml as the same object; no event
/// follows it.
class XmlEvents {
  public:
    virtual void StartElement(const XmlName& name, const XmlStartTag& tag) = 0;
    virtual void EndElement(const XmlName& name) = 0;
    virtual void Text(std::string_view utf8) = 0;
    virtual void CDataSection(std::string_view utf8) = 0;
    virtual void Comment(std::string_view utf8) = 0;
    virtual void ProcessingInstruction(std::string_view target, std::string_view data) = 0;

  protected:
    ~XmlEvents() = default;
};

/// Thrown by a receiver of events to have the document refused at the place the parser has
/// reached, as if it were malformed there.
struct XmlRefusal {
    std::wstring message;
};

/// Parses one document. Returns nothing when it was well formed and read to its end, else the
/// first reason why it was refused.
std::optional<XmlError> ParseXml(XmlInput& input, XmlEvents& events);

/// The deepest nesting that trees and struct values may have, in readers and writers alike:
/// everything that follows such nesting by recursion relies on it.
inline constexpr int kMaxNesting = 1000;

/// The message of a document refused for its nesting.
std::wstring NestingRefusal();

/// What the parser under this interface compares each with each, or keeps until the end of the
/// parse, is limited to what no real document comes near: the attributes of one element, the
/// namespace declarations in force at one place, and the different names of a document, prefixes
/// and namespace names among them.
inline constexpr int kMaxAttributes = 100'000;
inline constexpr int kMaxDeclarations = 10'000;
inline constexpr int kMaxNames = 250'000;

} // namespace KAXML

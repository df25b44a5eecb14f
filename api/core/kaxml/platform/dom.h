#pragma once

#include <kaxml/platform/arena.h>
#include <kaxml/platform/com_error.h>
#include <kaxml/platform/xml_parser.h>

#include <memory>
#include <span>
#include <string>
#include <string_view>

/// @file
/// The tree that schema files are read into and written from. Every node made by a document, and all
/// their texts, lie in memory of the document's, which goes at once.

namespace KAXML {

class IXMLDOMDocument2;
class IXMLDOMElement;

enum DOMNodeType {
    NODE_ELEMENT = 1,
    NODE_TEXT = 3,
    NODE_CDATA_SECTION = 4,
    NODE_PROCESSING_INSTRUCTION = 7,
    NODE_COMMENT = 8,
    NODE_DOCUMENT = 9
};

/// One attribute, or one namespace declaration, of an element.
class IXMLDOMAttribute {
  public:
    IXMLDOMAttribute(const XmlName* name, std::wstring_view value, bool isDeclaration) noexcept
        : m_name(name), m_value(value), m_isDeclaration(isDeclaration) {}

    /// The name as written.
    const std::wstring& get_nodeName() const noexcept { return m_name->qualifiedName; }
    /// Followed by a null character; valid until the attribute is set again.
    std::wstring_view get_text() const noexcept { return m_value; }
    bool IsDeclaration() const noexcept { return m_isDeclaration; }

  private:
    friend class IXMLDOMElement;
    const XmlName* m_name;
    std::wstring_view m_value;
    bool m_isDeclaration;
};

/// Walks an element's attributes in the order in which they stand, namespace declarations left
/// out.
class IXMLDOMNamedNodeMap {
  public:
    explicit IXMLDOMNamedNodeMap(std::span<const IXMLDOMAttribute> attributes) noexcept : m_attributes(attributes) {}

    /// The next attribute, or null behind the last one.
    const IXMLDOMAttribute* nextNode() noexcept;

  private:
    std::span<const IXMLDOMAttribute> m_attributes;
    std::size_t m_next = 0;
};

/// A node of the tree. Nodes belong to their document.
class IXMLDOMNode {
  public:
    IXMLDOMNode(const IXMLDOMNode&) = delete;
    IXMLDOMNode& operator=(const IXMLDOMNode&) = delete;

    DOMNodeType get_nodeType() const noexcept { return m_type; }
    /// The qualified name of an element, the target of a processing instruction, else "#text",
    /// "#cdata-section", "#comment" or "#document".
    const std::wstring& get_nodeName() const noexcept { return m_name->qualifiedName; }
    /// The local name of an element, the target of a processing instruction, else empty.
    const std::wstring& get_baseName() const noexcept { return m_name->localName; }
    const std::wstring& get_namespaceURI() const noexcept { return m_name->namespaceUri; }
    /// All text and CDATA below an element, joined; the node's own text for others.
    std::wstring get_text() const;
    /// The node's own text; empty for an element.
    std::wstring_view Value() const noexcept { return m_value; }
    IXMLDOMNode* get_firstChild() const noexcept { return m_firstChild; }
    IXMLDOMNode* get_nextSibling() const noexcept { return m_nextSibling; }
    IXMLDOMNode* get_parentNode() const noexcept { return m_parent; }
    /// An element's attributes; an empty walk for other nodes.
    IXMLDOMNamedNodeMap get_attributes() const noexcept;

    /// Appends a node of the same document that has no parent yet, and returns it.
    /// @throws _com_error when the tree would be nested deeper than kMaxNesting.
    IXMLDOMNode* appendChild(IXMLDOMNode* child);

    /// This node as an element: S_OK, or E_NOINTERFACE with `element` null.
    HRESULT QueryInterface(IXMLDOMElement** element) noexcept;

  protected:
    /// @param value  lives as long as the node.
    IXMLDOMNode(DOMNodeType type, const XmlName* name, std::wstring_view value) noexcept
        : m_type(type), m_name(name), m_value(value) {}

  private:
    friend class Arena;
    friend class IXMLDOMDocument2;
    void AppendTextTo(std::wstring& text) const;
    int DepthUnder(const IXMLDOMNode& parent) const noexcept;
    IXMLDOMNode* NextInTree(const IXMLDOMNode* top) noexcept;
    void MoveBranchTo(int depth);
    bool IsInside(const IXMLDOMNode* branch) const noexcept;

    DOMNodeType m_type;
    int m_depth = 0;
    const XmlName* m_name;
    std::wstring_view m_value;
    IXMLDOMNode* m_parent = nullptr;
    IXMLDOMNode* m_firstChild = nullptr;
    IXMLDOMNode* m_lastChild = nullptr;
    IXMLDOMNode* m_nextSibling = nullptr;
};

/// An element: a node with attributes.
class IXMLDOMElement : public IXMLDOMNode {
  public:
    /// Sets an attribute, or, for "xmlns" and "xmlns:prefix", a namespace declaration; a name
    /// already set keeps its place and gets the new value.
    /// @throws _com_error when the name cannot be an attribute's name.
    HRESULT setAttribute(std::wstring_view name, std::wstring_view value);

    /// Attributes and declarations in the order in which they were set.
    std::span<const IXMLDOMAttribute> Attributes() const noexcept { return {m_attributes, m_attributeCount}; }

  private:
    friend class Arena;
    friend class IXMLDOMDocument2;
    friend class IXMLDOMNode;
    IXMLDOMElement(IXMLDOMDocument2* document, const XmlName* name) noexcept
        : IXMLDOMNode(NODE_ELEMENT, name, {}), m_document(document) {}

    void MakeRoomForAttributes(std::size_t count);
    /// @param value  in the document's memory.
    void AppendAttribute(const XmlName* name, std::wstring_view value, bool isDeclaration);

    IXMLDOMDocument2* m_document;
    IXMLDOMAttribute* m_attributes = nullptr;
    std::size_t m_attributeCount = 0;
    std::size_t m_attributeRoom = 0;
};

/// Why a document could not be loaded; errorCode is 0 when nothing failed.
struct IXMLDOMParseError {
    HRESULT errorCode = 0;
    int line = 0;
    int linepos = 0;
    std::wstring url;
    std::wstring reason;
};

/// A document. It is the parent of the top-level nodes.
class IXMLDOMDocument2 : public IXMLDOMNode {
  public:
    IXMLDOMDocument2();
    virtual ~IXMLDOMDocument2();

    /// Loads a file into this empty document. Text of tab, line feed, carriage return and blank
    /// only is not kept. Returns false, with the parse error set and the document empty, for a
    /// file that cannot be read or is refused.
    bool load(const std::wstring& path);
    /// The same from text.
    bool loadXML(const std::wstring& text);
    const IXMLDOMParseError& get_parseError() const noexcept { return m_parseError; }

    /// Makes an element, not yet part of the tree. The name carries no prefix: serialising
    /// declares the namespace where it changes.
    /// @throws _com_error when XML allows no such name.
    IXMLDOMNode* createNode(DOMNodeType type, std::wstring_view name, std::wstring_view namespaceUri);
    IXMLDOMNode* createTextNode(std::wstring_view text);

    /// The document as UTF-8: the XML declaration, elements on lines of their own indented by two
    /// blanks, nothing added inside an element that holds text. The same tree always gives the
    /// same bytes.
    /// @throws _com_error naming the item and the character that XML cannot hold.
    std::string Serialize() const;

    /// Serialises the document and replaces the file at the path by it in one step.
    /// @throws _com_error; the old file is then as it was.
    HRESULT save(const std::wstring& path) const;

    /// The name object shared by all equal names of this document. The name is valid.
    const XmlName* Intern(std::wstring_view namespaceUri, std::wstring_view qualifiedName);

  private:
    friend class IXMLDOMElement;
    class TreeBuilder;
    struct NameTable;
    IXMLDOMElement* MakeElement(const XmlName* name) { return m_memory.Make<IXMLDOMElement>(this, name); }
    /// @param value  in the document's memory.
    IXMLDOMNode* MakeNode(DOMNodeType type, const XmlName* name, std::wstring_view value) {
        return m_memory.Make<IXMLDOMNode>(type, name, value);
    }
    bool Build(XmlInput& input, std::wstring url);
    void Clear() noexcept;

    std::unique_ptr<NameTable> m_names;
    Arena m_memory;
    IXMLDOMParseError m_parseError;
};

} // namespace KAXML

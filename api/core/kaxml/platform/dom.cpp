#include <kaxml/platform/dom.h>

#include <kaxml/platform/dom_names.h>
#include <kaxml/platform/xml_name.h>

#include <algorithm>

namespace KAXML {

using namespace std::string_view_literals;

namespace {

constexpr std::wstring_view kDeclaration = L"xmlns";
constexpr std::wstring_view kXmlUri = L"http://www.w3.org/XML/1998/namespace";
constexpr std::wstring_view kXmlnsUri = L"http://www.w3.org/2000/xmlns/";

// The parts of an attribute's name as setAttribute takes it.
struct AttributeName {
    std::wstring_view prefix;
    std::wstring_view local;
    bool isDeclaration;
};

AttributeName Split(std::wstring_view name) {
    const std::wstring_view prefix = name.substr(0, name.find(L':'));
    if (prefix.size() == name.size())
        return {{}, name, name == kDeclaration};
    return {prefix, name.substr(prefix.size() + 1), prefix == kDeclaration};
}

bool IsAllowed(const AttributeName& name) {
    if (!IsNCName(name.local))
        return false;
    return name.prefix.empty() || (name.isDeclaration && name.local != L"xml"sv && name.local != kDeclaration);
}

// A prefix cannot be taken back, and two namespace names are bound for good.
bool IsAllowedDeclaration(const AttributeName& name, std::wstring_view uri) {
    return !(uri.empty() && !name.prefix.empty()) && uri != kXmlUri && uri != kXmlnsUri;
}

[[noreturn]] void Refuse(std::wstring_view what, std::wstring_view name) {
    throw _com_error(E_INVALIDARG, L"'" + std::wstring(name) + L"' " + std::wstring(what));
}

} // namespace

const IXMLDOMAttribute* IXMLDOMNamedNodeMap::nextNode() noexcept {
    while (m_next < m_attributes.size()) {
        const IXMLDOMAttribute& attribute = m_attributes[m_next++];
        if (!attribute.IsDeclaration())
            return &attribute;
    }
    return nullptr;
}

std::wstring IXMLDOMNode::get_text() const {
    if (m_type != NODE_ELEMENT && m_type != NODE_DOCUMENT)
        return std::wstring(m_value);
    std::wstring text;
    AppendTextTo(text);
    return text;
}

// The depth of a tree is limited, and so is this recursion.
void IXMLDOMNode::AppendTextTo(std::wstring& text) const {
    for (const IXMLDOMNode* child = m_firstChild; child != nullptr; child = child->m_nextSibling) {
        if (child->m_type == NODE_TEXT || child->m_type == NODE_CDATA_SECTION)
            text += child->m_value;
        else if (child->m_type == NODE_ELEMENT)
            child->AppendTextTo(text);
    }
}

IXMLDOMNamedNodeMap IXMLDOMNode::get_attributes() const noexcept {
    if (m_type != NODE_ELEMENT)
        return IXMLDOMNamedNodeMap({});
    return IXMLDOMNamedNodeMap(static_cast<const IXMLDOMElement*>(this)->Attributes());
}

// Depth counts elements: the root's is 1, and that of a node of another kind is its parent's.
int IXMLDOMNode::DepthUnder(const IXMLDOMNode& parent) const noexcept {
    return parent.m_depth + (m_type == NODE_ELEMENT ? 1 : 0);
}

IXMLDOMNode* IXMLDOMNode::NextInTree(const IXMLDOMNode* top) noexcept {
    if (m_firstChild != nullptr)
        return m_firstChild;
    IXMLDOMNode* node = this;
    while (node != top && node->m_nextSibling == nullptr)
        node = node->m_parent;
    return node != top ? node->m_nextSibling : nullptr;
}

// A branch may be built before it is appended: all of it moves down.
void IXMLDOMNode::MoveBranchTo(int depth) {
    const int shift = depth - m_depth;
    for (IXMLDOMNode* node = this; node != nullptr; node = node->NextInTree(this)) {
        if (node->m_depth + shift > kMaxNesting)
            throw _com_error(E_FAIL, NestingRefusal());
    }
    for (IXMLDOMNode* node = this; node != nullptr; node = node->NextInTree(this))
        node->m_depth += shift;
}

bool IXMLDOMNode::IsInside(const IXMLDOMNode* branch) const noexcept {
    const IXMLDOMNode* node = this;
    while (node != nullptr && node != branch)
        node = node->m_parent;
    return node != nullptr;
}

IXMLDOMNode* IXMLDOMNode::appendChild(IXMLDOMNode* child) {
    if (child == nullptr)
        throw _com_error(E_POINTER, L"There is no node to append");
    if (m_type != NODE_ELEMENT && m_type != NODE_DOCUMENT)
        throw _com_error(E_INVALIDARG, L"A node '" + get_nodeName() + L"' cannot have children");
    if (child->m_parent != nullptr || child->m_type == NODE_DOCUMENT || IsInside(child))
        throw _com_error(E_INVALIDARG, L"The node '" + child->get_nodeName() + L"' is already part of a tree");
    child->MoveBranchTo(child->DepthUnder(*this));
    (m_lastChild != nullptr ? m_lastChild->m_nextSibling : m_firstChild) = child;
    m_lastChild = child;
    child->m_parent = this;
    return child;
}

HRESULT IXMLDOMNode::QueryInterface(IXMLDOMElement** element) noexcept {
    if (element == nullptr)
        return E_POINTER;
    *element = m_type == NODE_ELEMENT ? static_cast<IXMLDOMElement*>(this) : nullptr;
    return *element != nullptr ? S_OK : E_NOINTERFACE;
}

HRESULT IXMLDOMElement::setAttribute(std::wstring_view name, std::wstring_view value) {
    const AttributeName parts = Split(name);
    const XmlName* known = m_document->m_names->Find({}, name);
    if (known == nullptr && !IsAllowed(parts))
        Refuse(parts.isDeclaration ? L"cannot declare a prefix" : L"cannot be the name of an attribute", name);
    if (parts.isDeclaration && !IsAllowedDeclaration(parts, value))
        Refuse(L"cannot declare the namespace '" + std::wstring(value) + L"'", name);
    if (known == nullptr)
        known = m_document->Intern({}, name);
    value = m_document->m_memory.Copy(value);
    IXMLDOMAttribute* const end = m_attributes + m_attributeCount;
    IXMLDOMAttribute* const found =
        std::find_if(m_attributes, end, [known](const IXMLDOMAttribute& set) { return set.m_name == known; });
    if (found != end)
        found->m_value = value;
    else
        AppendAttribute(known, value, parts.isDeclaration);
    return S_OK;
}

void IXMLDOMElement::MakeRoomForAttributes(std::size_t count) {
    auto* const room = m_document->m_memory.MakeRoom<IXMLDOMAttribute>(count);
    m_attributes = std::uninitialized_copy_n(m_attributes, m_attributeCount, room) - m_attributeCount;
    m_attributeRoom = count;
}

void IXMLDOMElement::AppendAttribute(const XmlName* name, std::wstring_view value, bool isDeclaration) {
    constexpr std::size_t kFirstRoom = 4;
    if (m_attributeCount == m_attributeRoom)
        MakeRoomForAttributes(std::max(kFirstRoom, 2 * m_attributeRoom));
    new (m_attributes + m_attributeCount) IXMLDOMAttribute(name, value, isDeclaration);
    ++m_attributeCount;
}

IXMLDOMDocument2::IXMLDOMDocument2()
    : IXMLDOMNode(NODE_DOCUMENT, &FixedNames::Document(), {}), m_names(std::make_unique<NameTable>()) {}

IXMLDOMDocument2::~IXMLDOMDocument2() = default;

IXMLDOMNode* IXMLDOMDocument2::createNode(DOMNodeType type, std::wstring_view name, std::wstring_view namespaceUri) {
    if (type != NODE_ELEMENT)
        Refuse(L"cannot be made: only elements have names", name);
    const XmlName* const known = m_names->Find(namespaceUri, name);
    if (known != nullptr && known->localName.size() == name.size())
        return MakeElement(known);
    if (!IsNCName(name))
        Refuse(L"cannot be the name of an element", name);
    return MakeElement(Intern(namespaceUri, name));
}

IXMLDOMNode* IXMLDOMDocument2::createTextNode(std::wstring_view text) {
    return MakeNode(NODE_TEXT, &FixedNames::Text(), m_memory.Copy(text));
}

const XmlName* IXMLDOMDocument2::Intern(std::wstring_view namespaceUri, std::wstring_view qualifiedName) {
    return m_names->FindOrAdd(namespaceUri, qualifiedName);
}

void IXMLDOMDocument2::Clear() noexcept {
    m_firstChild = nullptr;
    m_lastChild = nullptr;
    m_memory.Clear();
    m_names->Clear();
}

} // namespace KAXML

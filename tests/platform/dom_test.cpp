#include <kaxml/platform/dom.h>

#include "platform/test_support.h"

namespace KAXML::Test {
namespace {

// A tree in one line: names, texts and attributes as the tree holds them.
std::wstring Outline(const IXMLDOMNode& node) {
    std::wstring text = node.get_nodeName();
    if (!node.get_namespaceURI().empty())
        text += L"{" + node.get_namespaceURI() + L"}";
    IXMLDOMNamedNodeMap attributes = node.get_attributes();
    while (const IXMLDOMAttribute* const attribute = attributes.nextNode())
        text += L" @" + attribute->get_nodeName() + L"=" + attribute->get_text();
    if (node.get_nodeType() != NODE_ELEMENT && node.get_nodeType() != NODE_DOCUMENT)
        text += L"'" + node.get_text() + L"'";
    if (node.get_firstChild() == nullptr)
        return text;
    text += L"(";
    for (const IXMLDOMNode* child = node.get_firstChild(); child != nullptr; child = child->get_nextSibling()) {
        EXPECT_EQ(child->get_parentNode(), &node);
        text += (child == node.get_firstChild() ? L"" : L", ") + Outline(*child);
    }
    return text + L")";
}

IXMLDOMElement* Element(IXMLDOMNode* node) {
    IXMLDOMElement* element = nullptr;
    EXPECT_EQ(node->QueryInterface(&element), S_OK);
    return element;
}

TEST(Dom, LoadsTrees) {
    const struct {
        const char* document;
        const wchar_t* outline;
    } cases[] = {
        {"<a/>", L"#document(a)"},
        {"<?p d?><!--c--> <a/><!--e-->", L"#document(p'd', #comment'c', a, #comment'e')"},
        {"<a> <b/>\n\t&#32;&#10; <b/> </a>", L"#document(a(b, b))"},
        {"<a> x &amp; y<!--c-->z </a>", L"#document(a(#text' x & y', #comment'c', #text'z '))"},
        {"<a> <![CDATA[ ]]> </a>", L"#document(a(#cdata-section' '))"},
        {"<a>x<![CDATA[y]]>z</a>", L"#document(a(#text'x', #cdata-section'y', #text'z'))"},
        {"<a>\xC2\xA0</a>", L"#document(a(#text'\u00A0'))"},
        {"<a c='1' b='2' xmlns='u' a='&#10;'><p:b xmlns:p='v'/></a>", L"#document(a{u} @c=1 @b=2 @a=\n(p:b{v}))"},
    };
    AtEverySliceSize([&] {
        for (const auto& each : cases) {
            IXMLDOMDocument2 document;
            EXPECT_TRUE(document.loadXML(WideFromUtf8(each.document))) << each.document;
            EXPECT_EQ(document.get_parseError().errorCode, 0);
            EXPECT_EQ(Outline(document), each.outline);
        }
    });
}

TEST(Dom, KeepsDeclarationsAfterTheAttributes) {
    IXMLDOMDocument2 document;
    ASSERT_TRUE(document.loadXML(L"<a xmlns='u' x='1' xmlns:ka='u' y='2'/>"));
    std::wstring names;
    for (const IXMLDOMAttribute& attribute : Element(document.get_firstChild())->Attributes())
        names +=
            attribute.get_nodeName() + (attribute.IsDeclaration() ? L"!" : L"") + L"=" + attribute.get_text() + L" ";
    EXPECT_EQ(names, L"x=1 y=2 xmlns!=u xmlns:ka!=u ");
}

TEST(Dom, JoinsTheTextBelowAnElement) {
    IXMLDOMDocument2 document;
    ASSERT_TRUE(document.loadXML(L"<a>1<b>2<![CDATA[3]]><!--no--><?no no?></b>4</a>"));
    EXPECT_EQ(document.get_firstChild()->get_text(), L"1234");
    EXPECT_EQ(document.get_text(), L"1234");
    EXPECT_EQ(document.get_firstChild()->get_baseName(), L"a");
    EXPECT_EQ(document.get_firstChild()->get_firstChild()->get_baseName(), L"");
    IXMLDOMElement* element = nullptr;
    EXPECT_EQ(document.get_firstChild()->get_firstChild()->QueryInterface(&element), E_NOINTERFACE);
    EXPECT_EQ(element, nullptr);
}

TEST(Dom, FailingLoadLeavesTheDocumentEmptyAndSaysWhy) {
    const TemporaryFolder folder;
    const std::wstring path = folder.Write("bad.xml", "<a>\n <b></a>");
    const std::wstring missing = path + L".missing";
    const std::wstring good = folder.Write("good.xml", "<a>\n <b/></a>");
    const NothingPrinted nothing;
    IXMLDOMDocument2 document;
    ASSERT_TRUE(document.load(good));
    EXPECT_FALSE(document.load(path));
    EXPECT_EQ(document.get_firstChild(), nullptr);
    const IXMLDOMParseError& error = document.get_parseError();
    EXPECT_EQ(error.errorCode, E_FAIL);
    EXPECT_EQ(error.line, 2);
    EXPECT_EQ(error.linepos, 9);
    EXPECT_EQ(error.url, path);
    EXPECT_EQ(error.reason, L"Opening and ending tag mismatch: b line 2 and a");
    EXPECT_FALSE(document.load(missing));
    EXPECT_EQ(error.errorCode, E_FAIL);
    EXPECT_EQ(error.line, 0);
    EXPECT_EQ(error.url, missing);
    EXPECT_EQ(error.reason, L"Cannot open '" + missing + L"': No such file or directory");
    EXPECT_FALSE(document.loadXML(std::wstring(L"<a/>\0<b/>", 9)));
    EXPECT_TRUE(document.load(good));
    EXPECT_EQ(error.errorCode, 0);
    EXPECT_EQ(Outline(document), L"#document(a(b))");
}

std::wstring Nested(int depth, const std::wstring& inside) {
    std::wstring text;
    for (int i = 0; i < depth; ++i)
        text += L"<a>";
    text += inside;
    for (int i = 0; i < depth; ++i)
        text += L"</a>";
    return text;
}

TEST(Dom, LimitsTheDepthOfDocuments) {
    IXMLDOMDocument2 document;
    ASSERT_TRUE(document.loadXML(Nested(kMaxNesting, L"text<!--c-->")));
    EXPECT_EQ(document.get_text(), L"text");
    EXPECT_FALSE(document.loadXML(Nested(kMaxNesting + 1, L"")));
    EXPECT_EQ(document.get_parseError().reason, L"The document is nested deeper than 1000 levels");
    EXPECT_EQ(document.get_parseError().linepos, 3 * (kMaxNesting + 1));
    EXPECT_FALSE(document.loadXML(Nested(100000, L"")));
    EXPECT_EQ(document.get_firstChild(), nullptr);
}

TEST(Dom, LimitsTheDepthOfTreesBuiltFromEitherEnd) {
    IXMLDOMDocument2 document;
    IXMLDOMNode* inner = document.createNode(NODE_ELEMENT, L"a", L"");
    for (int i = 1; i < kMaxNesting; ++i) {
        IXMLDOMNode* const outer = document.createNode(NODE_ELEMENT, L"a", L"");
        outer->appendChild(inner);
        inner = outer;
    }
    IXMLDOMNode* const tooMuch = document.createNode(NODE_ELEMENT, L"root", L"");
    document.appendChild(tooMuch);
    EXPECT_THROW(tooMuch->appendChild(inner), _com_error);
    EXPECT_EQ(tooMuch->get_firstChild(), nullptr);
    document.appendChild(inner);
    IXMLDOMNode* deepest = inner;
    while (deepest->get_firstChild() != nullptr)
        deepest = deepest->get_firstChild();
    EXPECT_THROW(deepest->appendChild(document.createNode(NODE_ELEMENT, L"a", L"")), _com_error);
    EXPECT_EQ(deepest->appendChild(document.createTextNode(L"x"))->get_text(), L"x");
}

TEST(Dom, RefusesWhatWouldBeNoTree) {
    IXMLDOMDocument2 document;
    IXMLDOMNode* const parent = document.createNode(NODE_ELEMENT, L"a", L"");
    IXMLDOMNode* const child = document.createNode(NODE_ELEMENT, L"b", L"");
    IXMLDOMNode* const text = document.createTextNode(L"t");
    EXPECT_EQ(parent->appendChild(child), child);
    EXPECT_THROW(parent->appendChild(child), _com_error);
    EXPECT_THROW(child->appendChild(parent), _com_error);
    EXPECT_THROW(child->appendChild(child), _com_error);
    EXPECT_THROW(child->appendChild(&document), _com_error);
    EXPECT_THROW(child->appendChild(nullptr), _com_error);
    EXPECT_THROW(text->appendChild(document.createTextNode(L"u")), _com_error);
    EXPECT_EQ(Outline(*parent), L"a(b)");
}

TEST(Dom, AllowsOnlyNamesThatXmlHas) {
    const struct {
        const wchar_t* name;
        bool isElementName;
        bool isAttributeName;
    } cases[] = {
        {L"a", true, true},           {L"_1-.\u00B7", true, true},  {L"\u00E9t\u00E9", true, true},
        {L"\U00010000", true, true},  {L"", false, false},          {L"1a", false, false},
        {L"-a", false, false},        {L"a b", false, false},       {L"a<", false, false},
        {L"p:a", false, false},       {L"\u00D7", false, false},    {L"\u2028", false, false},
        {L"xmlns", true, true},       {L"xmlns:ka", false, true},   {L"xmlns:", false, false},
        {L"xmlns:1", false, false},   {L"xmlns:xml", false, false}, {L"xmlns:xmlns", false, false},
        {L"xmlns:a:b", false, false}, {L"a\n", false, false},
    };
    IXMLDOMDocument2 document;
    IXMLDOMElement* const element = Element(document.createNode(NODE_ELEMENT, L"e", L""));
    for (const auto& each : cases) {
        SCOPED_TRACE(Utf8FromWide(each.name));
        for (const bool forElement : {true, false}) {
            const std::size_t count = element->Attributes().size();
            try {
                if (forElement)
                    document.createNode(NODE_ELEMENT, each.name, L"");
                else
                    element->setAttribute(each.name, L"u");
                EXPECT_TRUE(forElement ? each.isElementName : each.isAttributeName);
            } catch (const _com_error& error) {
                EXPECT_FALSE(forElement ? each.isElementName : each.isAttributeName);
                EXPECT_EQ(error.Error(), E_INVALIDARG);
                EXPECT_NE(std::wstring(error.Description()).find(each.name), std::wstring::npos);
                EXPECT_EQ(element->Attributes().size(), count);
            }
        }
    }
    EXPECT_THROW(element->setAttribute(L"xmlns:p", L""), _com_error);
    EXPECT_THROW(element->setAttribute(L"xmlns:p", L"http://www.w3.org/2000/xmlns/"), _com_error);
    EXPECT_THROW(document.createNode(NODE_COMMENT, L"c", L""), _com_error);
}

} // namespace
} // namespace KAXML::Test

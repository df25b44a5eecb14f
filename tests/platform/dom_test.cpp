#include <kaxml/platform/dom.h>

#include "platform/test_support.h"

namespace KAXML::Test {
namespace {

struct Dom : testing::Test {
    IXMLDOMNode* Make(const wchar_t* name, const wchar_t* uri = L"") {
        return document.createNode(NODE_ELEMENT, name, uri);
    }
    IXMLDOMElement* Append(IXMLDOMNode* parent, const wchar_t* name, const wchar_t* uri,
                           const wchar_t* text = nullptr) {
        IXMLDOMElement* element = nullptr;
        parent->appendChild(Make(name, uri))->QueryInterface(&element);
        if (text != nullptr)
            element->appendChild(document.createTextNode(text));
        return element;
    }
    IXMLDOMDocument2 document;
};

TEST_F(Dom, GivesAccessToItsNodes) {
    ASSERT_TRUE(document.loadXML(L"<p:a y='1' xmlns:p='u' x='2'>1<b> 2<![CDATA[3]]><!--no--><?no no?></b>4</p:a>"));
    IXMLDOMNode* const root = document.get_firstChild();
    EXPECT_EQ(root->get_text() + document.get_text(), L"1 2341 234");
    EXPECT_EQ(root->get_nodeName() + root->get_baseName() + root->get_namespaceURI(), L"p:aau");
    IXMLDOMNamedNodeMap attributes = root->get_attributes();
    EXPECT_EQ(attributes.nextNode()->get_nodeName(), L"y");
    EXPECT_EQ(attributes.nextNode()->get_nodeName(), L"x");
    EXPECT_EQ(attributes.nextNode(), nullptr);
    IXMLDOMElement* element = nullptr;
    EXPECT_EQ(root->QueryInterface(&element), S_OK);
    EXPECT_EQ(root->get_firstChild()->QueryInterface(&element), E_NOINTERFACE);
    EXPECT_EQ(element, nullptr);
}

TEST_F(Dom, KeepsEveryTextWhereItIs) {
    // Texts of all sizes around that of a block of memory, each in an element of its own.
    std::vector<std::pair<IXMLDOMElement*, std::wstring>> elements;
    for (const std::size_t size : {0U, 1U, 3U, 16000U, 16383U, 16384U, 20000U, 7U, 100000U, 1U, 16000U}) {
        elements.emplace_back(Append(&document, L"e", L""),
                              std::wstring(size, static_cast<wchar_t>(L'a' + elements.size())));
        auto& [element, text] = elements.back();
        for (int i = 0; i < 9; ++i) // set twice
            element->setAttribute(L"a" + std::to_wstring(i % 7), text + std::to_wstring(i));
        element->appendChild(document.createTextNode(text));
    }
    for (const auto& [element, text] : elements) {
        EXPECT_TRUE(element->get_text() == text && element->Attributes().size() == 7);
        for (std::size_t i = 0; i < 7; ++i) {
            const std::wstring_view value = element->Attributes()[i].get_text();
            EXPECT_TRUE(value == text + std::to_wstring(i < 2 ? i + 7 : i) && value.data()[value.size()] == L'\0');
        }
    }
}

TEST_F(Dom, FailingLoadLeavesTheDocumentEmptyAndSaysWhy) {
    for (const std::wstring& text : {std::wstring(L"<a>"), std::wstring(L"<a/>\0<b/>", 9), std::wstring()}) {
        EXPECT_TRUE(document.loadXML(L"<a/>") && document.get_parseError().errorCode == 0);
        EXPECT_FALSE(text.empty() ? document.load(L"/missing/x.xml") : document.loadXML(text));
        EXPECT_TRUE(document.get_firstChild() == nullptr && document.get_parseError().errorCode == E_FAIL);
    }
    EXPECT_EQ(document.get_parseError().reason, L"Cannot open '/missing/x.xml': No such file or directory");
}

TEST_F(Dom, LimitsTheDepthOfTreesBuiltFromEitherEnd) {
    IXMLDOMNode* inner = Make(L"a");
    for (int i = 1; i < kMaxNesting; ++i) {
        IXMLDOMNode* const outer = Make(L"a");
        outer->appendChild(inner);
        inner = outer;
    }
    IXMLDOMNode* const tooMuch = document.appendChild(Make(L"root"));
    EXPECT_THROW(tooMuch->appendChild(inner), _com_error);
    EXPECT_EQ(tooMuch->get_firstChild(), nullptr);
    document.appendChild(inner);
    while (inner->get_firstChild() != nullptr)
        inner = inner->get_firstChild();
    EXPECT_THROW(inner->appendChild(Make(L"a")), _com_error);
    EXPECT_EQ(inner->appendChild(document.createTextNode(L"x"))->get_text(), L"x");
}

TEST_F(Dom, RefusesWhatWouldBeNoTree) {
    IXMLDOMNode* const parent = Make(L"a");
    IXMLDOMNode* const child = parent->appendChild(Make(L"b"));
    IXMLDOMNode* const text = document.createTextNode(L"t");
    const std::pair<IXMLDOMNode*, IXMLDOMNode*> cases[] = {{parent, child},    {child, parent},  {child, child},
                                                           {child, &document}, {child, nullptr}, {text, Make(L"c")}};
    for (const auto& [to, node] : cases)
        EXPECT_THROW(to->appendChild(node), _com_error);
    EXPECT_TRUE(child->get_firstChild() == nullptr && child->get_nextSibling() == nullptr);
}

TEST_F(Dom, AllowsOnlyNamesThatXmlHas) {
    IXMLDOMElement* element = nullptr;
    Make(L"e")->QueryInterface(&element);
    const auto isAllowed = [&](const std::wstring& name, bool forElement) {
        const std::size_t count = element->Attributes().size();
        try {
            forElement ? void(Make(name.c_str())) : void(element->setAttribute(name, L"u"));
            return true;
        } catch (const _com_error& error) {
            EXPECT_EQ(error.Error(), E_INVALIDARG);
            EXPECT_NE(std::wstring(error.Description()).find(name), std::wstring::npos);
            EXPECT_EQ(element->Attributes().size(), count);
            return false;
        }
    };
    for (const wchar_t* const name : {L"a", L"_1-.\u00B7", L"\u00E9t\u00E9", L"\U00010000", L"xmlns"})
        EXPECT_TRUE(isAllowed(name, true) && isAllowed(name, false)) << Utf8FromWide(name);
    for (const wchar_t* const name : {L"", L"1a", L"-a", L"a b", L"a<", L"a\n", L"p:a", L"\u00D7", L"\u2028", L"xmlns:",
                                      L"xmlns:1", L"xmlns:xml", L"xmlns:xmlns", L"xmlns:a:b"})
        EXPECT_TRUE(!isAllowed(name, true) && !isAllowed(name, false)) << Utf8FromWide(name);
    EXPECT_TRUE(!isAllowed(L"xmlns:ka", true) && isAllowed(L"xmlns:ka", false));
    for (const wchar_t* const uri : {L"", L"http://www.w3.org/2000/xmlns/"})
        EXPECT_THROW(element->setAttribute(L"xmlns:p", uri), _com_error);
    EXPECT_THROW(document.createNode(NODE_COMMENT, L"c", L""), _com_error);
    // What stands in the tree already is no more allowed than before.
    EXPECT_FALSE(isAllowed(L"xmlns:ka", true));
    ASSERT_TRUE(document.loadXML(L"<p:a xmlns:p='u' p:b=''/>"));
    document.get_firstChild()->QueryInterface(&element);
    EXPECT_FALSE(isAllowed(L"p:b", false));
    EXPECT_THROW(document.createNode(NODE_ELEMENT, L"p:a", L"u"), _com_error);
}

TEST_F(Dom, DeclaresNamespacesWhereTheyChange) {
    ASSERT_TRUE(document.loadXML(L"<root xmlns='f' xmlns:ka='f'/>"));
    IXMLDOMElement* root = nullptr;
    document.get_firstChild()->QueryInterface(&root);
    IXMLDOMElement* const instance = Append(Append(root, L"list", L"f"), L"Pump", L"Plant.01.00", L"");
    instance->setAttribute(L"id", L"1");
    Append(instance, L"Tag", L"Plant.01.00", L"P-1");
    Append(instance, L"none", L"", L"");
    Append(root, L"after", L"f");
    Append(root, L"own", L"g")->setAttribute(L"xmlns", L"g");
    root->setAttribute(L"xmlns:ka", L"other");
    root->setAttribute(L"xmlns:q", L"q");
    EXPECT_EQ(document.Serialize(), BytesOf(KAXML_TEST_DATA_DIR "/xml/09-changing-namespaces.xml"));
}

TEST_F(Dom, NamesTheItemAmongItsLikeThatXmlCannotHold) {
    ASSERT_TRUE(document.loadXML(L"<a><b/></a>"));
    Append(document.get_firstChild(), L"b", L"", L"\xFFFE");
    try {
        document.Serialize();
        ADD_FAILURE();
    } catch (const _com_error& error) {
        EXPECT_STREQ(error.Description(), L"/a/b[2]/text(): XML cannot hold the character U+FFFE");
    }
}

} // namespace
} // namespace KAXML::Test

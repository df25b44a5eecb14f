#include <kaxml/platform/dom.h>

#include "platform/test_support.h"

namespace KAXML::Test {
namespace {

const std::string kDeclaration = "<?xml version='1.0' encoding='UTF-8'?>\n";

IXMLDOMElement* Append(IXMLDOMDocument2& document, IXMLDOMNode* parent, const wchar_t* name, const wchar_t* uri = L"") {
    IXMLDOMElement* element = nullptr;
    parent->appendChild(document.createNode(NODE_ELEMENT, name, uri))->QueryInterface(&element);
    return element;
}

// What is written is what was read, and read again gives the same tree.
TEST(DomWrite, LaysDocumentsOutAndKeepsThemWhole) {
    const struct {
        const char* document;
        const char* written;
    } cases[] = {
        {"<a/>", "<a/>\n"},
        {"<a></a>", "<a/>\n"},
        {"<a>  </a>", "<a/>\n"},
        {"<!--c--><a/><?p d?><?q?>", "<!--c-->\n<a/>\n<?p d?>\n<?q?>\n"},
        {"<a><b><c/></b><!--x\ny--><d>t</d><?p?></a>",
         "<a>\n  <b>\n    <c/>\n  </b>\n  <!--x\ny-->\n  <d>t</d>\n  <?p?>\n</a>\n"},
        {"<a>t<b> <c><d/></c></b></a>", "<a>t<b><c><d/></c></b></a>\n"},
        {"<a><b/>\n t </a>", "<a><b/>\n t </a>\n"},
        {"<a><![CDATA[ ]]><b/></a>", "<a><![CDATA[ ]]><b/></a>\n"},
        {"<a><![CDATA[]]></a>", "<a><![CDATA[]]></a>\n"},
        {"<a><![CDATA[x]]]]><![CDATA[>y]]></a>", "<a><![CDATA[x]]]]><![CDATA[>y]]></a>\n"},
        {"<a b='&quot;&apos;&lt;>&amp;&#9;&#10;&#13;'>&lt;>&amp;\"'&#13;\n\t</a>",
         "<a b=\"&quot;'&lt;>&amp;&#9;&#10;&#13;\">&lt;&gt;&amp;\"'&#13;\n\t</a>\n"},
        {"<a>\xC3\xA9\xF0\x9F\x99\x82</a>", "<a>\xC3\xA9\xF0\x9F\x99\x82</a>\n"},
        {"<a c='1' xmlns:p='v' b='2' xmlns='u'><p:d p:e='3'/><f/></a>",
         "<a c=\"1\" b=\"2\" xmlns:p=\"v\" xmlns=\"u\">\n  <p:d p:e=\"3\"/>\n  <f/>\n</a>\n"},
        {"<a xmlns='u'><b xmlns=''><c xmlns='u'/></b></a>",
         "<a xmlns=\"u\">\n  <b xmlns=\"\">\n    <c xmlns=\"u\"/>\n  </b>\n</a>\n"},
    };
    for (const auto& each : cases) {
        IXMLDOMDocument2 document;
        ASSERT_TRUE(document.loadXML(WideFromUtf8(each.document))) << each.document;
        const std::string written = document.Serialize();
        EXPECT_EQ(written, kDeclaration + each.written);
        ASSERT_TRUE(document.loadXML(WideFromUtf8(written))) << written;
        EXPECT_EQ(document.Serialize(), written);
    }
}

TEST(DomWrite, DeclaresNamespacesWhereTheyChange) {
    IXMLDOMDocument2 document;
    ASSERT_TRUE(document.loadXML(L"<root xmlns='f' xmlns:ka='f'/>"));
    IXMLDOMNode* const root = document.get_firstChild();
    IXMLDOMElement* const instance = Append(document, Append(document, root, L"list", L"f"), L"Pump", L"Plant.01.00");
    instance->setAttribute(L"id", L"1");
    Append(document, instance, L"Tag", L"Plant.01.00")->appendChild(document.createTextNode(L"P-1"));
    Append(document, instance, L"none");
    Append(document, root, L"after", L"f");
    Append(document, root, L"own", L"g")->setAttribute(L"xmlns", L"g");
    IXMLDOMElement* element = nullptr;
    root->QueryInterface(&element);
    element->setAttribute(L"xmlns:ka", L"other");
    element->setAttribute(L"xmlns:q", L"q");
    const std::string written = document.Serialize();
    EXPECT_EQ(written, kDeclaration + "<root xmlns=\"f\" xmlns:ka=\"other\" xmlns:q=\"q\">\n"
                                      "  <list>\n"
                                      "    <Pump id=\"1\" xmlns=\"Plant.01.00\">\n"
                                      "      <Tag>P-1</Tag>\n"
                                      "      <none xmlns=\"\"/>\n"
                                      "    </Pump>\n"
                                      "  </list>\n"
                                      "  <after/>\n"
                                      "  <own xmlns=\"g\"/>\n"
                                      "</root>\n");
    ASSERT_TRUE(document.loadXML(WideFromUtf8(written)));
    EXPECT_EQ(document.Serialize(), written);
}

TEST(DomWrite, EmptyTextsLeaveNoTrace) {
    IXMLDOMDocument2 document;
    IXMLDOMElement* const root = Append(document, &document, L"a");
    Append(document, root, L"b")->appendChild(document.createTextNode(L""));
    root->appendChild(document.createTextNode(L""));
    EXPECT_EQ(document.Serialize(), kDeclaration + "<a>\n  <b/>\n</a>\n");
}

TEST(DomWrite, NamesTheItemAndTheCharacterThatXmlCannotHold) {
    const std::wstring surrogate(1, static_cast<wchar_t>(0xDC00));
    const struct {
        std::wstring typeName, description, text;
        const wchar_t* message;
    } cases[] = {
        {L"Pump", L"x\x01", L"",
         L"/KaSchema/KaClass[typeName='Pump']/@description: XML cannot hold the character U+0001"},
        {L"Pump", L"", L"\xFFFE",
         L"/KaSchema/KaClass[typeName='Pump']/Value[2]/text(): XML cannot hold the character U+FFFE"},
        {L"Pump", surrogate, L"",
         L"/KaSchema/KaClass[typeName='Pump']/@description: XML cannot hold the character U+DC00"},
        {std::wstring(L"A\0", 2), L"", L"",
         L"/KaSchema/KaClass[typeName='A\uFFFD']/@typeName: XML cannot hold the character U+0000"},
    };
    for (const auto& each : cases) {
        const TemporaryFolder folder;
        const std::wstring path = folder.Write("old.xml", "old");
        IXMLDOMDocument2 document;
        IXMLDOMElement* const type = Append(document, Append(document, &document, L"KaSchema"), L"KaClass");
        type->setAttribute(L"typeName", each.typeName);
        type->setAttribute(L"description", each.description);
        Append(document, type, L"Value");
        Append(document, type, L"Value")->appendChild(document.createTextNode(each.text));
        try {
            document.save(path);
            ADD_FAILURE();
        } catch (const _com_error& error) {
            EXPECT_LT(error.Error(), 0);
            EXPECT_EQ(std::wstring(error.Description()), each.message);
        }
        EXPECT_EQ(BytesOf(folder / "old.xml"), "old");
    }
}

TEST(DomWrite, SavesWhatItSerialises) {
    const TemporaryFolder folder;
    const std::wstring path = WideFromUtf8((folder / "new.xml").string());
    IXMLDOMDocument2 document;
    ASSERT_TRUE(document.loadXML(L"<a><b>\u00E9</b></a>"));
    EXPECT_EQ(document.save(path), S_OK);
    EXPECT_EQ(BytesOf(folder / "new.xml"), document.Serialize());
    IXMLDOMDocument2 again;
    ASSERT_TRUE(again.load(path));
    EXPECT_EQ(again.Serialize(), document.Serialize());
}

} // namespace
} // namespace KAXML::Test

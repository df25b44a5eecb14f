#include <kaxml/platform/xml_parser.h>

#include "platform/test_support.h"

#include <memory>
#include <vector>

namespace KAXML::Test {
namespace {

// Writes the events down, pieces of one text joined.
class Recorder final : public XmlEvents {
  public:
    void StartElement(const XmlName& name, const XmlStartTag& tag) override {
        Add("<" + Full(name));
        for (std::size_t i = 0; i < tag.AttributeCount(); ++i)
            log += " " + Full(tag.AttributeName(i)) + "=" + std::string(tag.AttributeValue(i));
        for (std::size_t i = 0; i < tag.DeclarationCount(); ++i)
            log += " xmlns:" + std::string(tag.DeclarationPrefix(i)) + "=" + std::string(tag.DeclarationUri(i));
        log += ">";
    }
    void EndElement(const XmlName& name) override { Add("</" + Full(name) + ">"); }
    void Text(std::string_view utf8) override {
        log += m_inText ? std::string(utf8) : (Add("T:"), std::string(utf8)), m_inText = true;
    }
    void CDataSection(std::string_view utf8) override { Add("C:" + std::string(utf8)); }
    void Comment(std::string_view utf8) override { Add("#:" + std::string(utf8)); }
    void ProcessingInstruction(std::string_view target, std::string_view data) override {
        Add("?:" + std::string(target) + "|" + std::string(data));
    }

    std::string log;

  private:
    static std::string Full(const XmlName& name) {
        const std::wstring uri = name.namespaceUri.empty() ? L"" : L"{" + name.namespaceUri + L"}";
        const std::size_t colon = name.qualifiedName.find(L':');
        EXPECT_EQ(name.qualifiedName.substr(colon == std::wstring::npos ? 0 : colon + 1), name.localName);
        return Utf8FromWide(uri + name.qualifiedName);
    }
    void Add(const std::string& event) {
        log += (log.empty() ? "" : " ") + event;
        m_inText = false;
    }
    bool m_inText = false;
};

struct Result {
    std::optional<XmlError> error;
    std::string log;
};

Result ParseText(const std::string& utf8) {
    const std::wstring text = WideFromUtf8(utf8);
    Recorder recorder;
    const std::unique_ptr<XmlInput> input = OpenWideText(text.c_str());
    return {ParseXml(*input, recorder), recorder.log};
}

Result ParseFile(const std::string& bytes) {
    const TemporaryFolder folder;
    std::wstring reason;
    Recorder recorder;
    const std::unique_ptr<XmlInput> input = OpenFile(folder.Write("document.xml", bytes), reason);
    EXPECT_NE(input, nullptr) << Utf8FromWide(reason);
    return {ParseXml(*input, recorder), recorder.log};
}

TEST(XmlParser, DeliversEventsInOrder) {
    const struct {
        const char* document;
        const char* events;
    } cases[] = {
        {"<a/>", "<a> </a>"},
        {" \n<a></a>\n ", "<a> </a>"},
        {"<?xml version='1.0' standalone='yes'?><a/>", "<a> </a>"},
        {"<a>x&amp;y&#x41;&#233;\xF0\x9F\x99\x82</a>", "<a> T:x&yA\xC3\xA9\xF0\x9F\x99\x82 </a>"},
        {"<a>x<![CDATA[<&]]>y</a>", "<a> T:x C:<& T:y </a>"},
        {"<?p?><!--c--><a> <?q r s?><!-- - --> </a><!--e-->", "?:p| #:c <a> T:  ?:q|r s #: -  T:  </a> #:e"},
        {"<a b='1&amp;&#38;lt;' c=\"&lt;&quot;&#10;\n\"/>", "<a b=1&&lt; c=<\"\n > </a>"},
        {"<a xmlns='Plant.01.00' x='1'><b xmlns=''/></a>",
         "<{Plant.01.00}a x=1 xmlns:=Plant.01.00> <b xmlns:=> </b> </{Plant.01.00}a>"},
        {"<p:a xmlns:p='u' p:x='1' xml:lang='de'/>",
         "<{u}p:a {u}p:x=1 {http://www.w3.org/XML/1998/namespace}xml:lang=de xmlns:p=u> </{u}p:a>"},
        // Namespace names are texts here; not all of them are URIs.
        {"<a xmlns='Gr\u00F6\u00DFe 1'/>", "<{Gr\u00F6\u00DFe 1}a xmlns:=Gr\u00F6\u00DFe 1> </{Gr\u00F6\u00DFe 1}a>"},
        {"<\xC3\xA9t\xC3\xA9>1\r\n2\r3</\xC3\xA9t\xC3\xA9>", "<\xC3\xA9t\xC3\xA9> T:1\n2\n3 </\xC3\xA9t\xC3\xA9>"},
    };
    AtEverySliceSize([&] {
        for (const auto& each : cases) {
            SCOPED_TRACE(each.document);
            for (const Result& result : {ParseText(each.document), ParseFile(each.document)}) {
                EXPECT_FALSE(result.error) << Utf8FromWide(result.error->message);
                EXPECT_EQ(result.log, each.events);
            }
        }
    });
}

TEST(XmlParser, RefusesWithPositionAndPrintsNothing) {
    const struct {
        const char* document;
        int line;
        int column;
        const char* message;
    } cases[] = {
        {"", 1, 1, "Document is empty"},
        {"no markup", 1, 1, "Start tag expected, '<' not found"},
        {"<a>\n<b></a>", 2, 8, "Opening and ending tag mismatch: b line 2 and a"},
        {"<a>\n\n <b>", 3, 5, "Premature end of data in tag b line 3"},
        {"<a/><b/>", 1, 5, "Extra content at the end of the document"},
        {"<a x='1' x='2'/>", 1, 15, "Attribute x redefined"},
        {"<a xmlns:p='u' xmlns:q='u' p:x='' q:x=''/>", 1, 41, "Namespaced Attribute x in 'u' redefined"},
        {"<p:a/>", 1, 5, "Namespace prefix p on a is not defined"},
        {"<a p:x=''/>", 1, 10, "Namespace prefix p for x on a is not defined"},
        {"<a xmlns:p=''/>", 1, 14, "xmlns:p: Empty XML namespace is not allowed"},
        {"<a>&nope;</a>", 1, 10, "Entity 'nope' not defined"},
        {"<a x='&nope;'/>", 1, 13, "Entity 'nope' not defined"},
        {"<a>\x01</a>", 1, 4, "PCDATA invalid Char value 1"},
        {"<a>&#0;</a>", 1, 8, "xmlParseCharRef: invalid xmlChar value 0"},
        {"<a x='<'/>", 1, 7, "Unescaped '<' not allowed in attributes values"},
        {"<a>]]></a>", 1, 4, "Sequence ']]>' not allowed in content"},
        {"<!DOCTYPE a><a/>", 1, 12, "A document type declaration is not allowed"},
        {"<!DOCTYPE a [<!ENTITY x 'y'>]>\n<a>&x;</a>", 1, 13, "A document type declaration is not allowed"},
        {"<!DOCTYPE a SYSTEM 'http://nowhere.example/a.dtd'><a/>", 1, 50,
         "A document type declaration is not allowed"},
    };
    const NothingPrinted nothing;
    AtEverySliceSize([&] {
        for (const auto& each : cases) {
            SCOPED_TRACE(each.document);
            for (const Result& result : {ParseText(each.document), ParseFile(each.document)}) {
                ASSERT_TRUE(result.error);
                EXPECT_EQ(Utf8FromWide(result.error->message), each.message);
                EXPECT_EQ(result.error->line, each.line);
                EXPECT_EQ(result.error->column, each.column);
            }
        }
    });
}

TEST(XmlParser, DoesNotTakeANullCharacterForTheEnd) {
    for (const std::string& document :
         {std::string("<a/>\0<b/>", 9), std::string("<a>\0</a>", 8), std::string("\0<a/>", 5)})
        EXPECT_TRUE(ParseFile(document).error);
}

TEST(XmlParser, StopsAtTheFirstErrorBeforeALongTail) {
    std::string document = "<a><b></a>";
    for (int i = 0; i < 20000; ++i)
        document += "<c x='&nope;'><d></c>";
    const NothingPrinted nothing;
    const Result result = ParseText(document);
    ASSERT_TRUE(result.error);
    EXPECT_EQ(result.error->column, 11);
    EXPECT_EQ(result.log, "<a> <b>");
}

// Throws an object of a client's own at the n-th event, and counts all that it is given.
class Thrower final : public EveryEvent {
  public:
    explicit Thrower(int at) : m_at(at) {}
    int count = 0;

  private:
    void Note() override {
        if (++count == m_at)
            throw std::make_shared<int>(m_at);
    }
    int m_at;
};

TEST(XmlParser, PassesExceptionsOfEveryEventOnAndNoEventAfterThem) {
    // Every kind of event, an attribute with a reference, and a malformed tail.
    const wchar_t* const document = L"<?p?><!--c--><a x='&lt;1'>text<![CDATA[d]]>&amp;<b/></a><!--e--> malformed";
    AtEverySliceSize([&] {
        for (int at = 1; at <= 10; ++at) {
            Thrower thrower(at);
            try {
                ParseXml(*OpenWideText(document), thrower);
                ADD_FAILURE() << "nothing thrown at event " << at;
            } catch (const std::shared_ptr<int>& exception) {
                EXPECT_EQ(*exception, at);
                EXPECT_EQ(exception.use_count(), 1) << "not the object that was thrown";
            }
            EXPECT_EQ(thrower.count, at);
        }
    });
}

TEST(XmlParser, ReportsARefusalByTheReceiverAtItsPlace) {
    struct Refuser final : EveryEvent {
        void CDataSection(std::string_view) override { throw XmlRefusal{L"no sections"}; }
    } refuser;
    const std::optional<XmlError> error = ParseXml(*OpenWideText(L"<a>\n<![CDATA[x]]> <b></a>"), refuser);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->message, L"no sections");
    EXPECT_EQ(error->line, 2);
    EXPECT_EQ(error->column, 14);
}

TEST(XmlParser, ReadsDeepAndLongDocuments) {
    const std::size_t depth = 20000;
    const std::size_t length = 11'000'000; // beyond the limits that libxml2 has by default
    std::string deep;
    for (std::size_t i = 0; i < depth; ++i)
        deep += "<a>";
    for (std::size_t i = 0; i < depth; ++i)
        deep += "</a>";
    EXPECT_FALSE(ParseText(deep).error);
    const std::string text(length, 'x');
    for (const std::string& document : {"<a>" + text + "</a>", "<a x='" + text + "'/>",
                                        "<a><![CDATA[" + text + "]]></a>", "<a><!--" + text + "--></a>"}) {
        const Result result = ParseFile(document);
        EXPECT_FALSE(result.error);
        EXPECT_NE(result.log.find(text), std::string::npos);
    }
}

} // namespace
} // namespace KAXML::Test

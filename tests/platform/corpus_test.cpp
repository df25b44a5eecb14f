#include <kaxml/platform/dom.h>

#include "platform/test_support.h"

/// The documents in data/xml, through the parser and through the tree. Beside each lies what must
/// come of it (".expected"): the events, one in a line, then the document as the tree writes it, or
/// the place and reason of the refusal for one with "bad" in its name. Those with "bytes" in their
/// name are files only, the others are read as text too.
namespace KAXML::Test {
namespace {

// Writes the events down, pieces of one text joined.
class Recorder final : public XmlEvents {
  public:
    void StartElement(const XmlName& name, const XmlStartTag& tag) override {
        std::string event = "<" + Full(name);
        for (std::size_t i = 0; i < tag.AttributeCount(); ++i)
            event += " " + Full(tag.AttributeName(i)) + "=" + std::string(tag.AttributeValue(i));
        for (std::size_t i = 0; i < tag.DeclarationCount(); ++i)
            event += " xmlns:" + std::string(tag.DeclarationPrefix(i)) + "=" + std::string(tag.DeclarationUri(i));
        Add(event + ">");
    }
    void EndElement(const XmlName& name) override { Add("</" + Full(name) + ">"); }
    void Text(std::string_view utf8) override {
        if (m_inText)
            log.pop_back();
        Add((m_inText ? "" : "T:") + std::string(utf8));
        m_inText = true;
    }
    void CDataSection(std::string_view utf8) override { Add("C:" + std::string(utf8)); }
    void Comment(std::string_view utf8) override { Add("#:" + std::string(utf8)); }
    void ProcessingInstruction(std::string_view target, std::string_view data) override {
        Add("?:" + std::string(target) + "|" + std::string(data));
    }

    std::string log;

  private:
    static std::string Full(const XmlName& name) {
        EXPECT_EQ(name.qualifiedName.substr(name.qualifiedName.find(L':') + 1), name.localName);
        return Utf8FromWide((name.namespaceUri.empty() ? L"" : L"{" + name.namespaceUri + L"}") + name.qualifiedName);
    }
    void Add(const std::string& event) {
        log += event + "\n";
        m_inText = false;
    }
    bool m_inText = false;
};

// What the parser makes of the input, and the tree has made of the same document.
std::string Outcome(XmlInput& input, const IXMLDOMDocument2& document) {
    Recorder recorder;
    const XmlError error = ParseXml(input, recorder).value_or(XmlError());
    const IXMLDOMParseError& loadError = document.get_parseError();
    EXPECT_EQ(loadError.reason, error.message);
    EXPECT_EQ(std::pair(loadError.line, loadError.linepos), std::pair(error.line, error.column));
    const std::string place = std::to_string(error.line) + ":" + std::to_string(error.column) + " ";
    return recorder.log + (error.line == 0 ? document.Serialize() : place + Utf8FromWide(error.message) + "\n");
}

TEST(XmlCorpus, ComesOutAsExpected) {
    const NothingPrinted nothing;
    int documents = 0;
    for (const auto& entry : std::filesystem::directory_iterator(KAXML_TEST_DATA_DIR "/xml")) {
        std::filesystem::path path = entry.path();
        if (path.extension() != ".xml")
            continue;
        SCOPED_TRACE(path.filename());
        ++documents;
        const auto isNamed = [&](const char* word) { return path.string().find(word) != std::string::npos; };
        const std::wstring file = WideFromUtf8(path.string());
        const std::wstring text = WideFromUtf8(BytesOf(path));
        const std::string expected = BytesOf(path.replace_extension(".expected"));
        AtEverySliceSize([&] {
            std::wstring reason;
            IXMLDOMDocument2 document;
            EXPECT_EQ(document.load(file), !isNamed("-bad-"));
            EXPECT_EQ(Outcome(*OpenFile(file, reason), document), expected);
            if (!isNamed("-bytes-")) {
                EXPECT_EQ(document.loadXML(text), !isNamed("-bad-"));
                EXPECT_EQ(Outcome(*OpenWideText(text.c_str()), document), expected);
            }
            const std::string written = document.Serialize();
            EXPECT_EQ(document.loadXML(WideFromUtf8(written)), !isNamed("-bad-"));
            EXPECT_EQ(document.Serialize(), written) << "read again it is the same";
        });
    }
    EXPECT_GE(documents, 40);
}

} // namespace
} // namespace KAXML::Test

#include <kaxml/platform/dom.h>

#include "support/instance_recorder.h"

/// The documents of data/xml/conformance.txt, through the parser, the tree and the reader of
/// instances. The head of the file tells how its lines are to be read.
namespace KAXML::Test {
namespace {

// Characters by their numbers, \{20AC}, become what they stand for.
std::u32string Unescaped(std::string text) {
    std::u32string plain;
    while (!text.empty()) {
        const bool isEscape = text.starts_with("\\{");
        plain += static_cast<char32_t>(isEscape ? std::stol(text.substr(2), nullptr, 16) : text[0]);
        text.erase(0, isEscape ? text.find('}') + 1 : 1);
    }
    return plain;
}

std::string Bytes(std::u32string_view text, const std::string& form) {
    std::string bytes;
    ForEachUtf16Unit(text, [&](char32_t unit) {
        const std::string units{static_cast<char>(unit >> 8), static_cast<char>(unit), static_cast<char>(unit >> 8)};
        bytes += form == "bytes" ? units.substr(1, 1) : units.substr(form == "UTF-16BE" ? 0 : 1, 2);
    });
    return bytes;
}

std::string Utf8(std::u32string_view text) {
    std::string utf8;
    for (const char32_t c : text)
        AppendUtf8(utf8, c);
    return utf8;
}

// The document again as its events tell it.
struct Outline final : XmlEvents {
    void StartElement(const XmlName& name, const XmlStartTag& tag) override {
        text += "<" + Full(name);
        for (std::size_t i = 0; i < tag.AttributeCount(); ++i)
            text += " " + Full(tag.AttributeName(i)) + "='" + std::string(tag.AttributeValue(i)) + "'";
        text += ">";
    }
    void EndElement(const XmlName& name) override { text += "</" + Full(name) + ">"; }
    void Text(std::string_view utf8) override { text += utf8; }
    void CDataSection(std::string_view utf8) override { text += utf8; }
    void Comment(std::string_view utf8) override { text += "<!--" + std::string(utf8) + "-->"; }
    void ProcessingInstruction(std::string_view target, std::string_view data) override {
        text += "<?" + std::string(target) + " " + std::string(data) + "?>";
    }
    static std::string Full(const XmlName& name) {
        return Utf8FromWide((name.namespaceUri.empty() ? L"" : L"{" + name.namespaceUri + L"}") + name.qualifiedName);
    }
    std::string text;
};

std::string WithoutSpace(std::string text) {
    std::erase_if(text, [](char c) { return std::string_view(" \t\r\n").find(c) != std::string_view::npos; });
    return text;
}

struct Row {
    explicit Row(std::string line) {
        for (std::string* const field : {&rule, &verdict, &form, &document, &outcome, &written}) {
            *field = line.substr(0, line.find(" | "));
            line.erase(0, field->size() + 3);
        }
    }
    std::string rule, verdict, form, document, outcome, written;

    void Expect(bool isFile, const std::wstring& source) const {
        AtEverySliceSize([&] {
            std::wstring reason;
            Outline outline;
            IXMLDOMDocument2 tree;
            const XmlError error = ParseXml(isFile ? *OpenFile(source, reason) : *OpenWideText(source.c_str()), outline)
                                       .value_or(XmlError());
            EXPECT_EQ(isFile ? tree.load(source) : tree.loadXML(source), verdict == "accept");
            const auto& [code, line, column, url, message] = tree.get_parseError();
            EXPECT_EQ(std::tie(line, column, message), std::tie(error.line, error.column, error.message));
            const std::string expected = Utf8(Unescaped(outcome));
            const std::string place = std::to_string(line) + ":" + std::to_string(column) + ": ";
            const std::string found = code != 0 ? place + Utf8FromWide(message) : outline.text;
            EXPECT_EQ(code != 0 || outcome.empty() ? found.substr(0, expected.size()) : found, expected);
            if (code == 0)
                ExpectWriting(tree, outline);
        });
        EXPECT_EQ(verdict, InstanceRecorder().Run(isFile, source).ends_with("done\n") ? "accept" : "refuse");
    }

    // Apart from layout, what the tree writes is the same document. Read again it is written the same.
    void ExpectWriting(IXMLDOMDocument2& tree, const Outline& outline) const {
        Outline again;
        const std::string text = tree.Serialize();
        EXPECT_EQ(written.empty() ? "" : text, Utf8(Unescaped(written)));
        EXPECT_TRUE(tree.loadXML(WideFromUtf8(text)));
        EXPECT_EQ(tree.Serialize(), text);
        ParseXml(*OpenWideText(WideFromUtf8(text).c_str()), again);
        EXPECT_EQ(WithoutSpace(again.text), WithoutSpace(outline.text));
    }
};

TEST(XmlConformance, AcceptsAndRefusesWhatTheRulesAsk) {
    const TemporaryFolder folder;
    std::ifstream table(KAXML_TEST_DATA_DIR "/xml/conformance.txt");
    for (std::string line; std::getline(table, line);) {
        if (line.empty() || line.starts_with("#"))
            continue;
        const Row row(line);
        const std::u32string text = Unescaped(row.document);
        for (const std::string form : {"wide", "UTF-8", "UTF-16LE", "UTF-16BE", "bytes"}) {
            if (row.form != form && (row.form != "text" || form == "bytes"))
                continue;
            SCOPED_TRACE(line + " as " + form);
            const std::u32string mark = row.form == "text" && form.starts_with("UTF-16") ? U"\xFEFF" : U"";
            const std::string bytes = form == "UTF-8" ? Utf8(text) : Bytes(mark + text, form);
            const std::wstring file = folder.Write(std::to_string(table.tellg()) + form, bytes);
            row.Expect(form != "wide", form == "wide" ? TextOf<wchar_t>(text) : file);
        }
    }
    EXPECT_GE(folder.FileCount(), 600u);
}

} // namespace
} // namespace KAXML::Test

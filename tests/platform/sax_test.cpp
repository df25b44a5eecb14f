#include <kaxml/platform/sax.h>

#include "platform/test_support.h"

#include <functional>
#include <vector>

namespace KAXML::Test {
namespace {

std::string Narrow(const wchar_t* text, std::size_t length) { return Utf8FromWide(std::wstring_view(text, length)); }
std::string Narrow(const wchar_t* text, int length) {
    EXPECT_EQ(text[length], L'\0');
    return Narrow(text, static_cast<std::size_t>(length));
}

// Writes the calls down; each kind of call can be given an answer.
class Handler final : public ISAXContentHandler {
  public:
    std::vector<std::string> calls;
    std::function<HRESULT(ISAXAttributes&)> onStart;
    HRESULT endAnswer = S_OK;
    HRESULT textAnswer = S_OK;
    HRESULT documentAnswer = S_OK;

    HRESULT QueryInterface(const void*, void**) override { return E_NOINTERFACE; }
    unsigned long AddRef() override { return 0; }
    unsigned long Release() override { return 0; }
    HRESULT putDocumentLocator(ISAXLocator*) override { return S_OK; }
    HRESULT startDocument() override { return Note("start"), documentAnswer; }
    HRESULT endDocument() override { return Note("end"), S_OK; }
    HRESULT startPrefixMapping(const wchar_t*, int, const wchar_t*, int) override { return S_OK; }
    HRESULT endPrefixMapping(const wchar_t*, int) override { return S_OK; }
    HRESULT raw_startElement(const wchar_t* uri, int uriLength, const wchar_t* local, int localLength,
                             const wchar_t* qName, int qNameLength, ISAXAttributes* attributes) override {
        Note("<" + Narrow(uri, uriLength) + "|" + Narrow(local, localLength) + "|" + Narrow(qName, qNameLength));
        return onStart ? onStart(*attributes) : S_OK;
    }
    HRESULT raw_endElement(const wchar_t* uri, int uriLength, const wchar_t* local, int localLength,
                           const wchar_t* qName, int qNameLength) override {
        Note(">" + Narrow(uri, uriLength) + "|" + Narrow(local, localLength) + "|" + Narrow(qName, qNameLength));
        return endAnswer;
    }
    HRESULT raw_characters(const wchar_t* text, std::size_t length) override {
        return Note("T:" + Narrow(text, length)), textAnswer;
    }
    HRESULT ignorableWhitespace(const wchar_t*, std::size_t) override { return Note("unexpected"), S_OK; }
    HRESULT processingInstruction(const wchar_t*, int, const wchar_t*, int) override { return S_OK; }
    HRESULT skippedEntity(const wchar_t*, int) override { return Note("unexpected"), S_OK; }

  private:
    void Note(std::string call) { calls.push_back(std::move(call)); }
};

class Errors final : public ISAXErrorHandler {
  public:
    std::vector<std::string> reports;
    HRESULT answer = E_FAIL;
    bool throws = false;

    HRESULT QueryInterface(const void*, void**) override { return E_NOINTERFACE; }
    unsigned long AddRef() override { return 0; }
    unsigned long Release() override { return 0; }
    HRESULT error(ISAXLocator*, const wchar_t*, HRESULT) override { return reports.push_back("unexpected"), S_OK; }
    HRESULT fatalError(ISAXLocator* locator, const wchar_t* message, HRESULT status) override {
        int line = 0;
        int column = 0;
        EXPECT_EQ(locator->getLineNumber(&line), S_OK);
        EXPECT_EQ(locator->getColumnNumber(&column), S_OK);
        EXPECT_EQ(status, E_FAIL);
        reports.push_back(std::to_string(line) + ":" + std::to_string(column) + " " + Utf8FromWide(message));
        if (throws)
            throw std::string("own");
        return answer;
    }
    HRESULT ignorableWarning(ISAXLocator*, const wchar_t*, HRESULT) override {
        return reports.push_back("unexpected"), S_OK;
    }
};

struct SaxReader : testing::Test {
    SaxReader() {
        EXPECT_EQ(CreateSAXXMLReader(reader), S_OK);
        reader->putContentHandler(&handler);
        reader->putErrorHandler(&errors);
    }

    // Parses, and returns the failure's status, description and source.
    std::string Fail(const std::function<HRESULT()>& parse) {
        try {
            parse();
        } catch (const _com_error& error) {
            return std::to_string(error.Error() == E_FAIL) + "|" + Utf8FromWide(error.Description()) + "|" +
                   Utf8FromWide(error.Source());
        }
        return "nothing";
    }

    std::unique_ptr<ISAXXMLReader> reader;
    Handler handler;
    Errors errors;
};

TEST_F(SaxReader, JoinsRunsOfCharacterDataBetweenTags) {
    const struct {
        const wchar_t* content;
        std::vector<std::string> calls;
    } cases[] = {
        {L"", {}},
        {L" x\n\ty ", {"T: x\n\ty "}},
        {L"1&amp;2&#51;<![CDATA[<4>]]>5<!--c-->6<?p?>7", {"T:1&23<4>567"}},
        {L"a<b/>c", {"T:a", "<|b|b", ">|b|b", "T:c"}},
        {L"\u00E9\u4E2D x\u00E9", {"T:\u00E9\u4E2D x\u00E9"}},
        {L"<p:b xmlns:p='u'>x</p:b>", {"<u|b|p:b", "T:x", ">u|b|p:b"}},
    };
    AtEverySliceSize([&] {
        for (const auto& each : cases) {
            handler.calls.clear();
            EXPECT_EQ(reader->parse((L"<a>" + std::wstring(each.content) + L"</a>").c_str()), S_OK);
            std::vector<std::string> expected{"start", "<|a|a"};
            expected.insert(expected.end(), each.calls.begin(), each.calls.end());
            expected.insert(expected.end(), {">|a|a", "end"});
            EXPECT_EQ(handler.calls, expected);
        }
    });
    EXPECT_TRUE(errors.reports.empty());
}

TEST_F(SaxReader, DeliversALargeTextUnchangedAndWhole) {
    std::wstring text;
    while (text.size() < 1'500'000)
        text += L"line \u00E9 \U0001F642\n";
    reader->parse((L"<a>" + text + L"<b/>small</a>").c_str());
    ASSERT_EQ(handler.calls.size(), 8u);
    EXPECT_EQ(handler.calls[2], "T:" + Utf8FromWide(text));
    EXPECT_EQ(handler.calls[5], "T:small");
}

TEST_F(SaxReader, FindsAttributesByNamespaceAndLocalName) {
    std::vector<std::wstring> values;
    handler.onStart = [&](ISAXAttributes& attributes) {
        const struct {
            const wchar_t* uri;
            int uriLength;
            const wchar_t* name;
            int nameLength;
        } wanted[] = {
            {L"", 0, L"x", 1}, {L"u", 1, L"x", 1}, {nullptr, 0, L"xmlns", 5}, {L"", 0, L"p", 1}, {L"", 0, L"yz", 1}};
        for (const auto& each : wanted) {
            std::wstring value = L"kept";
            const HRESULT status =
                attributes.getValueFromName(each.uri, each.uriLength, each.name, each.nameLength, value);
            EXPECT_EQ(status, value == L"kept" ? E_INVALIDARG : S_OK);
            values.push_back(value);
        }
        return S_OK;
    };
    reader->parse(L"<a p:x='other' xmlns:p='u' xmlns='d' x='&#233;&lt;' y=''/>");
    EXPECT_EQ(values, (std::vector<std::wstring>{L"\u00E9<", L"other", L"kept", L"kept", L""}));
}

TEST_F(SaxReader, ReportsAFatalErrorOnceAndFails) {
    const TemporaryFolder folder;
    const std::wstring path = folder.Write("bad.xml", "<a>\n<b></a>");
    const std::string message = "Opening and ending tag mismatch: b line 2 and a";
    const NothingPrinted nothing;
    for (const HRESULT answer : {E_FAIL, S_OK}) {
        errors.answer = answer;
        errors.reports.clear();
        EXPECT_EQ(Fail([&] { return reader->parse(L"<a>\n<b></a>"); }), "1|line 2, column 8: " + message + "|");
        EXPECT_EQ(Fail([&] { return reader->parseURL(path.c_str()); }),
                  "1|line 2, column 8: " + message + "|" + Utf8FromWide(path));
        EXPECT_EQ(errors.reports, (std::vector<std::string>{"2:8 " + message, "2:8 " + message}));
    }
    errors.throws = true;
    EXPECT_THROW(reader->parse(L"<a>"), std::string);
    reader->putErrorHandler(nullptr);
    EXPECT_THROW(reader->parse(L"<a>"), _com_error);
    EXPECT_THROW(reader->parse(nullptr), _com_error);
}

TEST_F(SaxReader, StopsAtAFailingAnswerAndAtAnException) {
    const wchar_t* const document = L"<a>x<b/>y</a> malformed";
    handler.onStart = [](ISAXAttributes&) { return E_NOINTERFACE; };
    try {
        reader->parse(document);
        ADD_FAILURE();
    } catch (const _com_error& error) {
        EXPECT_EQ(error.Error(), E_NOINTERFACE);
    }
    EXPECT_EQ(handler.calls, (std::vector<std::string>{"start", "<|a|a"}));
    handler.onStart = [](ISAXAttributes&) -> HRESULT { throw std::string("own"); };
    EXPECT_THROW(reader->parse(document), std::string);
    handler.onStart = nullptr;
    for (HRESULT Handler::*const answer : {&Handler::endAnswer, &Handler::textAnswer, &Handler::documentAnswer}) {
        handler.*answer = E_FAIL;
        EXPECT_THROW(reader->parse(document), _com_error);
        handler.*answer = S_FALSE; // a success with a remark
        EXPECT_EQ(reader->parse(L"<a>x</a>"), S_OK);
    }
    EXPECT_TRUE(errors.reports.empty()) << "a stop is no malformed document";
}

TEST_F(SaxReader, ReadsUrlsAndRefusesWhatItCannotOpenWithoutTheErrorHandler) {
    const TemporaryFolder folder;
    const std::wstring path = folder.Write("a b.xml", "<a/>");
    EXPECT_EQ(reader->parseURL(path.c_str()), S_OK);
    EXPECT_EQ(reader->parseURL((L"file://" + WideFromUtf8(folder.Path().string()) + L"/a%20b.xml").c_str()), S_OK);
    EXPECT_EQ(Fail([&] { return reader->parseURL(L"/missing/x.xml"); }),
              "1|Cannot open '/missing/x.xml': No such file or directory|/missing/x.xml");
    EXPECT_EQ(Fail([&] { return reader->parseURL(L"http://h/x"); }),
              "1|Cannot open 'http://h/x': only files and file: URLs can be read|http://h/x");
    EXPECT_TRUE(errors.reports.empty());
    // A file that opens but cannot be read.
    EXPECT_EQ(Fail([&] { return reader->parseURL(L"/proc/self/mem"); }),
              "1|line 1, column 1: Cannot read '/proc/self/mem': Input/output error|/proc/self/mem");
    EXPECT_EQ(errors.reports.size(), 1u);
}

TEST_F(SaxReader, OnlyChecksTheDocumentWithoutAHandlerAndServesParsesWithinParses) {
    std::vector<HRESULT> inner;
    handler.onStart = [&](ISAXAttributes& attributes) {
        handler.onStart = nullptr;
        inner.push_back(reader->parse(L"<inner>text</inner>"));
        std::wstring value;
        return attributes.getValueFromName(L"", 0, L"x", 1, value);
    };
    EXPECT_EQ(reader->parse(L"<a x='1'>outer</a>"), S_OK);
    EXPECT_EQ(handler.calls, (std::vector<std::string>{"start", "<|a|a", "start", "<|inner|inner", "T:text",
                                                       ">|inner|inner", "end", "T:outer", ">|a|a", "end"}));
    EXPECT_EQ(reader->putContentHandler(nullptr), S_OK);
    EXPECT_EQ(reader->parse(L"<a/>"), S_OK);
    EXPECT_THROW(reader->parse(L"<a"), _com_error);
}

} // namespace
} // namespace KAXML::Test

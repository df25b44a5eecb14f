#include <kaxml/kaxml/reader/default_handlers.h>

#include "platform/test_support.h"

#include <functional>

namespace KAXML::Test {
namespace {

std::string Names(const XmlName& name) {
    return Utf8FromWide(name.namespaceUri + L"|" + name.localName + L"|" + name.qualifiedName + L"| ");
}

// Writes the calls down; each kind of call can be given an answer.
struct Handler final : CDefaultSAXContentHandler {
    std::string calls;
    std::function<HRESULT(ISAXAttributes&)> onStart;
    HRESULT startAnswer = S_OK, textAnswer = S_OK, endAnswer = S_OK;

    HRESULT startDocument() override { return calls = "start ", startAnswer; }
    HRESULT endDocument() override { return calls += "end ", S_OK; }
    HRESULT raw_startElement(const XmlName& name, ISAXAttributes* attributes) override {
        calls += "<" + Names(name);
        return onStart ? onStart(*attributes) : S_OK;
    }
    HRESULT raw_endElement(const XmlName& name) override { return calls += ">" + Names(name), endAnswer; }
    HRESULT raw_characters(const wchar_t* text, std::size_t length) override {
        return calls += "T:" + Utf8FromWide(std::wstring_view(text, length)) + " ", textAnswer;
    }
};

struct Errors final : CDefaultErrorHandler {
    int reports = 0;
    HRESULT answer = S_OK;
    HRESULT fatalError(ISAXLocator*, const wchar_t*, HRESULT) override { return ++reports, answer; }
};

struct SaxReader : testing::Test {
    SaxReader() {
        EXPECT_EQ(CreateSAXXMLReader(reader), S_OK);
        reader->putContentHandler(&handler);
        reader->putErrorHandler(&errors);
    }
    // Parses, and returns the failing status.
    HRESULT Parse(const wchar_t* text) {
        try {
            return reader->parse(text);
        } catch (const _com_error& error) {
            return error.Error();
        }
    }
    std::unique_ptr<ISAXXMLReader> reader;
    Handler handler;
    Errors errors;
};

TEST_F(SaxReader, FindsAttributesByNamespaceAndLocalNameAlsoBehindAnInnerParse) {
    std::wstring values;
    bool isInner = false;
    handler.onStart = [&](ISAXAttributes& attributes) {
        if (std::exchange(isInner, true))
            return S_OK;
        EXPECT_EQ(Parse(L"<b x='inner'>text</b>"), S_OK);
        const std::pair<std::wstring, int> wanted[] = {{L"x", 0}, {L"x", 1}, {L"xmlns", 0}, {L"p", 0}, {L"y", 0}};
        for (const auto& [name, uriLength] : wanted) {
            std::wstring value = L"kept";
            const HRESULT status =
                attributes.getValueFromName(uriLength == 0 ? nullptr : L"u", uriLength, (name + L"more").c_str(),
                                            static_cast<int>(name.size()), value);
            EXPECT_EQ(status, value == L"kept" ? E_INVALIDARG : S_OK);
            values += value + L";";
        }
        return S_OK;
    };
    EXPECT_EQ(Parse(L"<p:a p:x='other' xmlns:p='u' xmlns='d' x='&#233;&lt;' y=''>1&amp;2</p:a>"), S_OK);
    EXPECT_EQ(values, L"\u00E9<;other;kept;kept;;");
    EXPECT_EQ(handler.calls, "start <|b|b| T:text >|b|b| end T:1&2 >u|a|p:a| end ");
}

TEST_F(SaxReader, ReportsAFatalErrorOnceAndFailsWhateverTheAnswer) {
    EXPECT_EQ(Parse(L"<a>\n<b></a>"), E_FAIL);
    errors.answer = E_FAIL;
    EXPECT_EQ(Parse(L"<a>\n<b></a>"), E_FAIL);
    EXPECT_EQ(errors.reports, 2);
    reader->putErrorHandler(nullptr);
    EXPECT_EQ(Parse(L"<a>"), E_FAIL);
    EXPECT_EQ(Parse(nullptr), E_POINTER);
    reader->putContentHandler(nullptr); // only checks the document
    EXPECT_EQ(Parse(L"<a/>"), S_OK);
    EXPECT_EQ(Parse(L"<a"), E_FAIL);
}

TEST_F(SaxReader, LeavesOutTheTextsThatAreSwitchedOff) {
    bool isWanted = false;
    reader->putCharactersSwitch(&isWanted);
    handler.onStart = [&](ISAXAttributes& attributes) {
        std::wstring value;
        isWanted = attributes.getValueFromName(nullptr, 0, L"t", 1, value) == S_OK;
        return S_OK;
    };
    EXPECT_EQ(Parse(L"<a>0<b t=''>1<![CDATA[2]]></b>3<c>4<![CDATA[5]]></c>6</a>"), S_OK);
    EXPECT_EQ(handler.calls, "start <|a|a| <|b|b| T:12 >|b|b| T:3 <|c|c| >|c|c| >|a|a| end ");
    EXPECT_EQ(Parse(L"<a><b>&x;</b></a>"), E_FAIL) << "but they are checked";
}

TEST_F(SaxReader, StopsAtAFailingAnswer) {
    const wchar_t* const document = L"<a>x<b/>y</a> malformed";
    for (HRESULT Handler::*const answer : {&Handler::startAnswer, &Handler::textAnswer, &Handler::endAnswer}) {
        handler.*answer = E_NOINTERFACE;
        EXPECT_EQ(Parse(document), E_NOINTERFACE);
        handler.*answer = S_FALSE; // a success with a remark
        EXPECT_EQ(Parse(L"<a>x</a>"), S_OK);
    }
    handler.onStart = [](ISAXAttributes&) { return E_NOINTERFACE; };
    EXPECT_EQ(Parse(document), E_NOINTERFACE);
    EXPECT_EQ(handler.calls, "start <|a|a| ");
    EXPECT_EQ(errors.reports, 0) << "a stop is no malformed document";
}

} // namespace
} // namespace KAXML::Test

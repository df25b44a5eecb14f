#include <kaxml/platform/xml_input.h>

#include "platform/test_support.h"

namespace KAXML::Test {
namespace {

// The parser must stop at the break and report it, wherever in the markup it falls.
TEST(XmlInput, BreakIsTheReportedErrorWhereverItFalls) {
    EveryEvent ignore;
    const std::string declaration = "<?xml version='1.0' encoding='us-ascii'?>";
    const std::string document = "<?pi some data?><!--comment--><a xmlns:p='u' p:b = 'value &amp; &#10;'>text &lt;"
                                 "<![CDATA[data]]><c d=\"1\"></c><e/></a> <!--end--> ";
    const NothingPrinted nothing;
    const TemporaryFolder folder;
    AtEverySliceSize([&] {
        for (std::size_t at = 0; at < document.size(); ++at) {
            std::wstring reason;
            const std::string start = declaration + document.substr(0, at);
            const std::wstring path = folder.Write("d.xml", start + "\xE9" + document.substr(at));
            const XmlError error = ParseXml(*OpenFile(path, reason), ignore).value();
            EXPECT_EQ(error.message, L"The bytes are no text in the encoding 'us-ascii'");
            EXPECT_EQ(error.line, 1);
            EXPECT_NEAR(error.column, static_cast<double>(start.size()) - 5.5, 6.5) << start;
        }
    });
    std::wstring reason; // a file that opens but cannot be read
    EXPECT_EQ(ParseXml(*OpenFile(L"/proc/self/mem", reason), ignore)->message,
              L"Cannot read '/proc/self/mem': Input/output error");
    const std::wstring endless = folder.Write("d.xml", "<?xml" + std::string(5000, ' '));
    EXPECT_EQ(ParseXml(*OpenFile(endless, reason), ignore)->message, L"The XML declaration is too long");
}

TEST(XmlInput, TellsPathsAndUrlsApart) {
    const auto expect = [](const std::wstring& url, const wchar_t* expected, const wchar_t* refusal = nullptr) {
        std::wstring path;
        std::wstring reason;
        EXPECT_EQ(PathFromUrl(url, path, reason), refusal == nullptr) << Utf8FromWide(url);
        EXPECT_EQ(path, expected);
        EXPECT_EQ(reason, refusal == nullptr ? L"" : L"Cannot open '" + url + L"': " + refusal);
    };
    for (const wchar_t* const path : {L"/a b/100%.xml", L"C://x", L"a b://x"})
        expect(path, path);
    for (const wchar_t* const url : {L"file:///a%20b/%C3%A9", L"FILE://LocalHost/a b/\u00E9", L"file:/a b/%c3%a9"})
        expect(url, L"/a b/\u00E9");
    for (const wchar_t* const url : {L"file:///a%2", L"file:///a%zz", L"file:///a%00b", L"file:///a%E9b"})
        expect(url, L"", L"it holds a malformed escape");
    for (const wchar_t* const url : {L"http://a/b", L"zip+x://a"})
        expect(url, L"", L"only files and file: URLs can be read");
    expect(L"file://host/a.xml", L"", L"the host 'host' is not this machine");
}

} // namespace
} // namespace KAXML::Test

#include <kaxml/platform/xml_input.h>

#include "platform/test_support.h"

namespace KAXML::Test {
namespace {

using namespace std::literals;

std::string ReadAll(XmlInput& input, std::size_t capacity) {
    std::string all;
    std::string buffer(capacity, '\0');
    std::size_t count;
    while ((count = input.Read(buffer.data(), capacity)) > 0) {
        all.append(buffer, 0, count);
        EXPECT_TRUE(count == capacity || input.Read(buffer.data(), capacity) == 0) << "a short read before the end";
    }
    return all;
}

std::string Utf16(const std::u16string& text, bool bigEndian) {
    std::string bytes;
    for (const char16_t c : text) {
        const char low = static_cast<char>(c & 0xFF);
        const char high = static_cast<char>(c >> 8);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

// What the parser sees of a file, and why it broke.
struct Decoded {
    std::string utf8;
    std::string failure;
};

Decoded DecodeFile(const std::string& bytes) {
    const TemporaryFolder folder;
    std::wstring reason;
    const std::unique_ptr<XmlInput> input = OpenFile(folder.Write("document.xml", bytes), reason);
    EXPECT_NE(input, nullptr);
    std::string utf8 = ReadAll(*input, 13);
    return {utf8, Utf8FromWide(input->Failure())};
}

TEST(XmlInput, DecodesFiles) {
    const std::u16string text16 = u"<a>\u00E9\u4E2D\U0001F642</a>";
    const std::string text8 = "<a>\u00E9\u4E2D\U0001F642</a>";
    const std::string latin = "<?xml version=\"1.0\" encoding = 'ISO-8859-1' ?><a>";
    const std::string windows = "<?xml version='1.0' encoding='windows-1252'?><a>";
    const std::string declared16 = "<?xml version='1.0' encoding='utf-16'?><a/>";
    const struct {
        std::string bytes;
        std::string utf8;
    } cases[] = {
        {"", ""},
        {text8, text8},
        {"\xEF\xBB\xBF" + text8, text8},
        {"<?xml version='1.0' encoding='utf-8'?>" + text8, "<?xml version='1.0' encoding='utf-8'?>" + text8},
        {"\xFF\xFE" + Utf16(text16, false), text8},
        {"\xFE\xFF" + Utf16(text16, true), text8},
        {"\xFF\xFE\0\0"s + "<\0\0\0a\0\0\0/\0\0\0>\0\0\0"s, "<a/>"},
        {"\xFE\xFF" + Utf16(std::u16string(declared16.begin(), declared16.end()), true), declared16},
        {Utf16(std::u16string(declared16.begin(), declared16.end()), false), declared16},
        {latin + "\xE9\x80</a>", latin + "\u00E9\u0080</a>"},
        {windows + "\x80</a>", windows + "\u20AC</a>"},
        {"<?xml version='1.0' encoding='US-ASCII'?><a/>", "<?xml version='1.0' encoding='US-ASCII'?><a/>"},
        {"<?xml version='1.0' encoding='Shift_JIS'?><a>\x93\xFA</a>",
         "<?xml version='1.0' encoding='Shift_JIS'?><a>\u65E5</a>"},
        // Not judged here: the parser itself checks UTF-8.
        {"<a>\xE9</a>", "<a>\xE9</a>"},
    };
    AtEverySliceSize([&] {
        for (const auto& each : cases) {
            const Decoded decoded = DecodeFile(each.bytes);
            EXPECT_EQ(decoded.utf8, each.utf8);
            EXPECT_EQ(decoded.failure, "");
        }
    });
}

TEST(XmlInput, BreaksExactlyWhereTheBytesAreNoText) {
    const std::string ascii = "<?xml version='1.0' encoding='us-ascii'?>";
    const std::string before = "<?xml version='1.0' encoding='";
    const struct {
        std::string bytes;
        std::string utf8;
        std::string failure;
    } cases[] = {
        {ascii + "<a>\xE9</a>", ascii + "<a>\xFF", "The bytes are no text in the encoding 'us-ascii'"},
        {"\xFF\xFE" + Utf16(u"<a>", false) + "\x00\xD8x\0"s, "<a>\xFF",
         "The bytes are no text in the encoding 'UTF-16LE'"},
        {"\xFF\xFE" + Utf16(u"<a/>", false) + "\n", "<a/>\xFF", "The bytes are no text in the encoding 'UTF-16LE'"},
        {before + "nonsuch'?><a/>", before + "\xFF", "The encoding 'nonsuch' is not known"},
        {before + "'?><a/>", before + "\xFF", "The encoding '' is no encoding's name"},
        {before + "UTF-8//TRANSLIT'?><a/>", before + "\xFF", "The encoding 'UTF-8//TRANSLIT' is no encoding's name"},
        {before + "UTF-16'?><a/>", before + "\xFF", "The encoding 'UTF-16' contradicts the bytes of the file"},
        {before + "WCHAR_T'?><a/>", before + "\xFF", "The encoding 'WCHAR_T' contradicts the bytes of the file"},
        {before + "IBM037'?><a/>", before + "\xFF", "The encoding 'IBM037' contradicts the bytes of the file"},
        {"\xEF\xBB\xBF" + before + "latin1'?><a/>", before + "\xFF",
         "The encoding 'latin1' contradicts the bytes of the file"},
        {"\xFE\xFF" + Utf16(u"<?xml version='1.0' encoding='utf-8'?>", true), before + "\xFF",
         "The encoding 'utf-8' contradicts the bytes of the file"},
        {"\xFE\xFF" + Utf16(u"<?xml version='1.0' encoding='UTF-16LE'?>", true), before + "\xFF",
         "The encoding 'UTF-16LE' contradicts the bytes of the file"},
    };
    AtEverySliceSize([&] {
        for (const auto& each : cases) {
            const Decoded decoded = DecodeFile(each.bytes);
            EXPECT_EQ(decoded.utf8, each.utf8);
            EXPECT_EQ(decoded.failure, each.failure);
        }
    });
    const Decoded endless = DecodeFile("<?xml" + std::string(5000, ' ') + "encoding='latin1'?><a/>");
    EXPECT_EQ(endless.failure, "The XML declaration is too long");
}

TEST(XmlInput, ConvertsWideText) {
    const std::wstring lone = {L'<', L'a', L'>', static_cast<wchar_t>(0xD800), L'x'};
    const std::wstring any = {L'<', 0xE9, 0x4E2D, 0x1F642, L'>'};
    AtEverySliceSize([&] {
        const std::unique_ptr<XmlInput> input = OpenWideText(any.c_str());
        EXPECT_EQ(ReadAll(*input, 3), "<\u00E9\u4E2D\U0001F642>");
        EXPECT_EQ(ReadAll(*OpenWideText(L"\xFEFF<a/>"), 100), "<a/>");
        EXPECT_EQ(ReadAll(*OpenWideText(L""), 100), "");
        const std::unique_ptr<XmlInput> broken = OpenWideText(lone.c_str());
        EXPECT_EQ(ReadAll(*broken, 2), "<a>\xFF");
        EXPECT_EQ(broken->Failure(), L"The text holds U+D800, which is no character");
    });
}

// The parser must stop at the break and report it, wherever in the markup it falls.
TEST(XmlInput, BreakIsTheReportedErrorWhereverItFalls) {
    EveryEvent ignore;
    const std::string declaration = "<?xml version='1.0' encoding='us-ascii'?>";
    const std::string document = "<?pi some data?><!--comment--><a xmlns:p='u' p:b = 'value &amp; &#10;'>text &lt;"
                                 "<![CDATA[data]]><c d=\"1\"></c><e/></a> <!--end--> ";
    const NothingPrinted nothing;
    AtEverySliceSize([&] {
        const TemporaryFolder folder;
        for (std::size_t at = 0; at < document.size(); ++at) {
            SCOPED_TRACE(document.substr(0, at));
            std::wstring reason;
            const std::wstring path =
                folder.Write("d.xml", declaration + document.substr(0, at) + "\xE9" + document.substr(at));
            const std::unique_ptr<XmlInput> input = OpenFile(path, reason);
            const std::optional<XmlError> error = ParseXml(*input, ignore);
            ASSERT_TRUE(error);
            EXPECT_EQ(Utf8FromWide(error->message), "The bytes are no text in the encoding 'us-ascii'");
            EXPECT_EQ(error->line, 1);
            EXPECT_LE(error->column, static_cast<int>(declaration.size() + at + 1));
            EXPECT_GE(error->column, static_cast<int>(declaration.size() + at) - 12);
        }
    });
}

TEST(XmlInput, NamesTheReasonWhenAFileCannotBeOpened) {
    const TemporaryFolder folder;
    const std::wstring path = WideFromUtf8(folder.Path().string());
    std::wstring reason;
    EXPECT_EQ(OpenFile(path + L"/missing.xml", reason), nullptr);
    EXPECT_EQ(reason, L"Cannot open '" + path + L"/missing.xml': No such file or directory");
    EXPECT_EQ(OpenFile(path, reason), nullptr);
    EXPECT_EQ(reason, L"Cannot open '" + path + L"': Is a directory");
}

TEST(XmlInput, TellsPathsAndUrlsApart) {
    const struct {
        const wchar_t* url;
        const wchar_t* path; // null when it is refused
        const wchar_t* reason;
    } cases[] = {
        {L"plain.xml", L"plain.xml", L""},
        {L"/a b/100%.xml", L"/a b/100%.xml", L""},
        {L"C://x", L"C://x", L""},
        {L"a b://x", L"a b://x", L""},
        {L"file:///a%20b/%C3%A9.xml", L"/a b/\u00E9.xml", L""},
        {L"FILE://LocalHost/a.xml", L"/a.xml", L""},
        {L"file:/a.xml", L"/a.xml", L""},
        {L"file://host/a.xml", nullptr, L"Cannot open 'file://host/a.xml': the host 'host' is not this machine"},
        {L"file:///a%2", nullptr, L"Cannot open 'file:///a%2': it holds a malformed escape"},
        {L"file:///a%zz", nullptr, L"Cannot open 'file:///a%zz': it holds a malformed escape"},
        {L"file:///a%00b", nullptr, L"Cannot open 'file:///a%00b': it holds a malformed escape"},
        {L"file:///a%E9b", nullptr, L"Cannot open 'file:///a%E9b': it holds a malformed escape"},
        {L"http://a/b", nullptr, L"Cannot open 'http://a/b': only files and file: URLs can be read"},
        {L"zip+x://a", nullptr, L"Cannot open 'zip+x://a': only files and file: URLs can be read"},
    };
    for (const auto& each : cases) {
        std::wstring path;
        std::wstring reason;
        EXPECT_EQ(PathFromUrl(each.url, path, reason), each.path != nullptr) << Utf8FromWide(each.url);
        EXPECT_EQ(path, each.path != nullptr ? each.path : L"");
        EXPECT_EQ(reason, each.reason);
    }
}

} // namespace
} // namespace KAXML::Test

#include "oracles.h"

#include <kaxml/kaxml/core/log_message.h>
#include <kaxml/kaxml/core/tag_coding.h>
#include <kaxml/platform/dom.h>
#include <kaxml/platform/numbers.h>

#include <cmath>

/// The text utilities, against each other, the XML parser and the C library.
namespace KAXML::Fuzz {

bool IsCharacter(wchar_t c) { return c > 0 && c <= 0x10FFFF && !IsSurrogate(static_cast<char32_t>(c)); }

template <typename Char> std::wstring TagOf(const std::wstring& name) {
    std::basic_string<Char> text;
    for (const wchar_t c : name)
        AppendCodePoint(text, static_cast<char32_t>(c));
    std::basic_string<Char> tag = text;
    EXPECT_EQ(EncodeTag(tag) != 0, tag != text);
    const std::wstring encoded(tag.begin(), tag.end());
    EXPECT_EQ(DecodeTag(tag) != 0, tag.size() != encoded.size());
    EXPECT_TRUE(tag == text || name.find(L"__x") != name.npos || !std::all_of(name.begin(), name.end(), IsCharacter));
    return encoded;
}

// A reader of XML makes the text of it, where XML can hold that.
void CheckEscaping(const std::wstring& text) {
    const auto isKept = [](wchar_t c) { return IsCharacter(c) && c < 0xFFFE && (c >= L' ' || c == L'\n'); };
    std::wstring escaped;
    ConvertToXmlString(text.c_str(), escaped);
    IXMLDOMDocument2 document;
    EXPECT_TRUE(document.loadXML(L"<a>." + escaped + L".</a>"));
    EXPECT_TRUE(document.get_text() == L"." + text + L"." || !std::all_of(text.begin(), text.end(), isKept));
}

void CheckNumbers(const wchar_t* text, double number) {
    char expected[64];
    std::snprintf(expected, sizeof expected, "%.15g", number);
    const std::wstring formatted = FormatDouble(number);
    EXPECT_EQ(Test::Narrow(formatted), expected);
    if (std::isnormal(number) && std::fabs(number) < 1e308)
        EXPECT_EQ(FormatDouble(ParseDouble(formatted.c_str()).value), formatted);
    const long whole = std::wcstol(text, nullptr, 10);
    const ParsedNumber<std::int32_t> read = ParseInt32(text);
    EXPECT_EQ(read.value, std::clamp(whole, -2147483648L, 2147483647L));
    EXPECT_EQ(read.error == 0, read.value == whole);
    const double real = std::wcstod(text, nullptr);
    EXPECT_TRUE(ParseDouble(text).value == real || std::isnan(real));
}

void CheckNames(const std::wstring& text) {
    std::uint32_t found[2] = {}, again[2] = {};
    std::wstring prefix, name;
    const bool isVersion = Succeeds([&] { CKaSchema::ParseVersionString(text.c_str(), &found[0], &found[1]); });
    CKaSchema::FormatVersionString(name, found[0], found[1]);
    if (isVersion && found[0] < 1000 && found[1] < 1000) {
        CKaSchema::ParseVersionString(name.c_str(), &again[0], &again[1]);
        EXPECT_TRUE(std::equal(found, found + 2, again));
    }
    if (Succeeds([&] { CKaSchema::ParseKaClassName(text.c_str(), prefix, name); }))
        EXPECT_TRUE(prefix + L":" + name == text || (prefix.empty() && name == text));
    IXMLDOMDocument2 document;
    EXPECT_TRUE(CKaClass::KaNameIsValid(text.c_str(), 0) == 0 || document.loadXML(L"<" + text + L"/>"));
    PathFromUrl(text, prefix, name);
    LogFormatted(LOG_INFO, text, {text, "narrow", 7});
}

// The first nine bytes are a number, and how often a character stands that no UTF-8 text has.
void Convert(Bytes& input) {
    double number = 0;
    input.rest.copy(reinterpret_cast<char*>(&number), sizeof number);
    input.Take(sizeof number);
    const unsigned odd = input.Next();
    std::wstring text = WideFromUtf8(input.rest);
    EXPECT_EQ(WideFromUtf8(Utf8FromWide(text)), text);
    EXPECT_TRUE(Utf8FromWide(text) == input.rest || text.find(0xFFFD) != text.npos);
    for (std::size_t i = 0; odd != 0 && i < text.size(); i += odd)
        text[i] = static_cast<wchar_t>(static_cast<unsigned>(text[i]) * 0x111 + (odd & 1) * 0xD800);
    const Test::LogRecorder log;
    const bool isText = std::all_of(text.begin(), text.end(), IsCharacter);
    EXPECT_TRUE(TagOf<wchar_t>(text) == TagOf<char16_t>(text) || !isText);
    CheckEscaping(text);
    CheckNumbers(text.c_str(), number);
    CheckNames(text.c_str());
}

} // namespace KAXML::Fuzz

KAXML_FUZZ_TARGET(KAXML::Fuzz::Convert)

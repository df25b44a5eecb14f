#include "platform/test_support.h"
#include "support/expectations.h"

#include <kaxml/kaxml/core/tag_coding.h>
#include <kaxml/kaxml/core/xml_escaping.h>

namespace KAXML::Test {
namespace {

using Cases = std::vector<std::pair<std::wstring, std::wstring>>;

TEST(Text, IsMadeOfNumbersAndNarrowTextsAndEscaped) {
    const GUID guid = {0x0123ABCD, 0x45, 0xF, {0, 1, 2, 3, 0xFE, 5, 6, 7}};
    EXPECT_EQ(ToWString(&guid) + ToWString(-2147483648L), L"0123abcd-0045-000f-0001-0203fe050607-2147483648");
    EXPECT_EQ(ToWString("a\xC3\xA9\xFF") + ToWString(static_cast<const char*>(nullptr)), L"a\u00E9\uFFFD");
    const Cases cases = {{L"a<b 'c' > \"d\"", L"a&lt;b &apos;c&apos; &gt; &quot;d&quot;"},
                         {L"&amp;\t\n\r ~\U0001F600", L"&amp;amp;\t\n\r ~??"},
                         {{1, 0x1F, 0x7F, 0xE9, 0xD7FF, 0xD800, 0xDFFF}, L"??&#x7F;&#xE9;&#xD7FF;??"},
                         {{0xE000, 0xFFFD, 0xFFFE, 0xFFFF}, L"&#xE000;&#xFFFD;??"}};
    for (const auto& [text, escaped] : cases) {
        std::wstring output = text;
        ConvertToXmlString(output.c_str(), output); // its own text may be the source
        EXPECT_EQ(output, escaped);
    }
}

TEST(Text, CodesNamesAsTagsAndBack) {
    const Cases cases = {{L"Name_9", L"Name_9"},
                         {L"", L""},
                         {L"2 a", L"__x0032____x0020__a"},
                         {L"\u00E9-.", L"\u00E9__x002d____x002e__"},
                         {L"\U0001F600", L"__xd83d____xde00__"}};
    for (const auto& [name, tag] : cases) {
        std::wstring text = name;
        EXPECT_EQ(EncodeToValidXmlTag(text), name == tag ? 0 : 1);
        EXPECT_EQ(text, tag);
        EXPECT_EQ(DecodeFromValidXmlTag(text), name == tag ? 0 : 1);
        EXPECT_EQ(text, name);
    }
    const Cases tags = {{L"ab__x002E__", L"ab."}, {L"__x00G1__", L"__x00G1__"}, {L"__x0041_", L"__x0041_"},
                        {L"x__x0000__y", L"xy"},  {L"__x__x0041__", L"__xA"},   {L"__x005f___x0041__", L"__x0041__"}};
    for (const auto& [tag, decoded] : tags) {
        std::wstring name = tag;
        DecodeFromValidXmlTag(name);
        EXPECT_EQ(name, decoded);
    }
}

template <typename Char> struct TextOfWidth : testing::Test {};
using Widths = testing::Types<char16_t, char32_t, wchar_t>;
TYPED_TEST_SUITE(TextOfWidth, Widths);

TYPED_TEST(TextOfWidth, IsCodedAndEscapedByItsUnitsOf16Bits) {
    const std::u32string cases[][3] = {
        {U"\U0001F600a", U"__xd83d____xde00__a", U"??a"},
        {U"a\U00010000\U0010FFFF", U"a__xd800____xdc00____xdbff____xdfff__", U"a????"},
        {U"\u00E9 <\uFFFF", U"\u00E9__x0020____x003c____xffff__", U"&#xE9; &lt;?"},
        {{'b', 0xDC00, 0xD800, '"'}, U"b__xdc00____xd800____x0022__", U"b??&quot;"},
    };
    for (const auto& [name, tag, escaped] : cases) {
        auto text = TextOf<TypeParam>(name);
        EXPECT_EQ(EscapeForXml(std::basic_string_view<TypeParam>(text)), TextOf<TypeParam>(escaped));
        EXPECT_EQ(EncodeTag(text), 1);
        EXPECT_EQ(text, TextOf<TypeParam>(tag));
        EXPECT_EQ(DecodeTag(text), 1);
        EXPECT_EQ(text, TextOf<TypeParam>(name));
    }
}

TEST(Text, TakesValuesBeyondAllCharactersForNone) {
    std::u32string text = {'a', 0x110000, 0xFFFFFFFF};
    EXPECT_EQ(EscapeForXml(std::u32string_view(text)), U"a??");
    EncodeTag(text);
    EXPECT_EQ(text, U"a__xffff____xffff__");
}

} // namespace
} // namespace KAXML::Test

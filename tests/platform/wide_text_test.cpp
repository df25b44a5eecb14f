#include <kaxml/platform/wide_text.h>

#include <gtest/gtest.h>
#include <vector>

namespace KAXML {
namespace {

template <typename Char> struct WideText : testing::Test {
    static std::vector<char32_t> Taken(const std::basic_string<Char>& text) {
        std::vector<char32_t> taken;
        for (const Char *p = text.data(), *end = p + text.size(); p != end;)
            taken.push_back(NextCodePoint(p, end));
        return taken;
    }
};
using Widths = testing::Types<char16_t, char32_t>;
TYPED_TEST_SUITE(WideText, Widths);

TYPED_TEST(WideText, TakesAndAppendsCharactersInEitherWidth) {
    const std::vector<char32_t> characters{'a', 0xE9, 0xFFFF, 0x10000, 0x1F642, 0x10FFFF};
    std::basic_string<TypeParam> text;
    for (const char32_t c : characters)
        AppendCodePoint(text, c);
    EXPECT_EQ(text.size(), sizeof(TypeParam) == 2 ? 9u : 6u);
    EXPECT_EQ(this->Taken(text), characters);
    std::vector<char32_t> units;
    ForEachUtf16Unit(std::basic_string_view<TypeParam>(text).substr(2), [&](char32_t unit) { units.push_back(unit); });
    EXPECT_EQ(units, (std::vector<char32_t>{0xFFFF, 0xD800, 0xDC00, 0xD83D, 0xDE42, 0xDBFF, 0xDFFF}));
    const std::vector<std::vector<char32_t>> lone{{0xD800}, {0xDC00, 0xD800}, {0xD800, 'x'}, {0xD800, 0xD800, 'y'}};
    for (const auto& surrogates : lone)
        EXPECT_EQ(this->Taken({surrogates.begin(), surrogates.end()}), surrogates);
}

TEST(WideTextUtf8, DecodesAndReplacesMalformedBytes) {
    const struct {
        const char* utf8;
        std::u32string text;
    } cases[] = {
        {"plain ASCII text, longer than a step", U"plain ASCII text, longer than a step"},
        {"\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF",
         U"\x80\x7FF\x800\xFFFF\x10000\x10FFFF"},
        {"\xC0\xAF", U"\xFFFD\xFFFD"},                     // overlong
        {"\xED\xA0\x80", U"\xFFFD\xFFFD\xFFFD"},           // surrogate
        {"\xF4\x90\x80\x80", U"\xFFFD\xFFFD\xFFFD\xFFFD"}, // above U+10FFFF
        {"a\xE9z\xE4\xB8", U"a\xFFFDz\xFFFD\xFFFD"},       // cut off
    };
    for (const auto& each : cases) {
        std::wstring expected;
        for (const char32_t c : each.text)
            AppendCodePoint(expected, c);
        EXPECT_EQ(WideFromUtf8(each.utf8), expected) << each.utf8;
        EXPECT_EQ(WideFromUtf8(Utf8FromWide(expected)), expected);
    }
    EXPECT_EQ(Utf8FromWide(std::wstring{L'a', static_cast<wchar_t>(0xD800), L'z'}), "a\xEF\xBF\xBDz");
    std::string refused;
    AppendUtf8(refused, 0xD800);
    AppendUtf8(refused, 0x110000);
    EXPECT_EQ(refused, "\xED\xA0\x80\xFF");
}

} // namespace
} // namespace KAXML

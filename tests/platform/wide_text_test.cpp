#include "platform/test_support.h"

#include <vector>

namespace KAXML::Test {
namespace {

template <typename Char> struct WideText : testing::Test {
    using Text = std::basic_string<Char>;
    using View = std::basic_string_view<Char>;

    static std::vector<char32_t> Taken(const Text& text) {
        std::vector<char32_t> taken;
        for (const Char *p = text.data(), *end = p + text.size(); p != end;)
            taken.push_back(NextCodePoint(p, end));
        return taken;
    }
    static std::string Utf8(const Text& text) {
        std::string utf8;
        AppendWideAsUtf8(utf8, View(text));
        return utf8;
    }
};
using Widths = testing::Types<char16_t, char32_t, wchar_t>;
TYPED_TEST_SUITE(WideText, Widths);

TYPED_TEST(WideText, TakesAndAppendsCharactersInEitherWidth) {
    const std::vector<char32_t> characters{'a', 0xE9, 0xFFFF, 0x10000, 0x1F642, 0x10FFFF};
    const auto text = TextOf<TypeParam>({characters.data(), characters.size()});
    EXPECT_EQ(text.size(), sizeof(TypeParam) == 2 ? 9u : 6u);
    EXPECT_EQ(this->Taken(text), characters);
    std::vector<char32_t> units;
    ForEachUtf16Unit(std::basic_string_view<TypeParam>(text).substr(2), [&](char32_t unit) { units.push_back(unit); });
    EXPECT_EQ(units, (std::vector<char32_t>{0xFFFF, 0xD800, 0xDC00, 0xD83D, 0xDE42, 0xDBFF, 0xDFFF}));
    const std::vector<std::vector<char32_t>> lone{{0xD800}, {0xDC00, 0xD800}, {0xD800, 'x'}, {0xD800, 0xD800, 'y'}};
    for (const auto& surrogates : lone)
        EXPECT_EQ(this->Taken({surrogates.begin(), surrogates.end()}), surrogates);
}

TYPED_TEST(WideText, IsCutBetweenCharactersOnly) {
    const auto text = TextOf<TypeParam>(U"a\U0001F642\U00010000\xD800z");
    const std::size_t lengths[2][8] = {{0, 1, 1, 3, 3, 5, 6, 7}, {0, 1, 2, 3, 4, 5, 5, 5}};
    for (std::size_t limit = 0; limit < 8; ++limit)
        EXPECT_EQ(WholeLength(std::basic_string_view<TypeParam>(text), limit),
                  lengths[sizeof(TypeParam) == 2 ? 0 : 1][limit]);
}

TYPED_TEST(WideText, IsTakenInSlicesUpToWhatIsNoCharacter) {
    for (const char32_t end : std::u32string{0, 0xDC00, 0xD800}) {
        const auto text = TextOf<TypeParam>(U"ab\u00E9\U0001F642\U0010FFFF\x7F\x80z") + static_cast<TypeParam>(end);
        for (std::size_t limit = 1; limit < 10; ++limit) {
            const TypeParam* next = text.c_str();
            std::string utf8;
            char32_t broken = 0;
            while (broken == 0 && *next != TypeParam())
                broken = TakeAsUtf8(utf8, next, limit);
            EXPECT_EQ(utf8, "ab\u00E9\U0001F642\U0010FFFF\x7F\xC2\x80z");
            EXPECT_EQ(broken, end);
        }
    }
}

TYPED_TEST(WideText, ComesFromUtf8AndReplacesMalformedBytes) {
    const std::pair<const char*, std::u32string> cases[] = {
        {"plain ASCII text, longer than a step", U"plain ASCII text, longer than a step"},
        {"\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF",
         U"\x80\x7FF\x800\xFFFF\x10000\x10FFFF"},
        {"\xC0\xAF", U"\xFFFD\xFFFD"},                     // overlong
        {"\xED\xA0\x80", U"\xFFFD\xFFFD\xFFFD"},           // surrogate
        {"\xF4\x90\x80\x80", U"\xFFFD\xFFFD\xFFFD\xFFFD"}, // above U+10FFFF
        {"a\xE9z\xE4\xB8", U"a\xFFFDz\xFFFD\xFFFD"},       // cut off
    };
    for (const auto& [utf8, text] : cases) {
        std::basic_string<TypeParam> wide;
        AppendUtf8AsWide(wide, utf8);
        EXPECT_EQ(wide, TextOf<TypeParam>(text)) << utf8;
        EXPECT_EQ(WideFromUtf8(this->Utf8(wide)), TextOf<wchar_t>(text));
    }
    EXPECT_EQ(this->Utf8({'a', static_cast<TypeParam>(0xD800), 'z'}), "a\xEF\xBF\xBDz");
    std::string refused;
    AppendUtf8(refused, 0xD800);
    AppendUtf8(refused, 0x110000);
    EXPECT_EQ(refused, "\xED\xA0\x80\xFF");
}

} // namespace
} // namespace KAXML::Test

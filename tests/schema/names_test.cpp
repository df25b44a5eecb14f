#include "support/expectations.h"

namespace KAXML::Test {
namespace {

using Texts = std::vector<const wchar_t*>;
using Refused = std::vector<std::pair<Texts, std::wstring>>;

TEST(Names, FollowOneRule) {
    const Refused refused = {
        {{L"1a", L"-", L" a"}, L" names must begin with a letter or '_': '"},
        {{L"a-b", L"a.b", L"a:b", L"a "}, L" names can only contain alpha-numeric characters or '_': '"}};
    const std::pair<int (*)(const wchar_t*, int), std::wstring> kinds[] = {
        {&CKaSchema::SchemaNameIsValid, L"KaSchema"}, {&CKaClass::KaNameIsValid, L"KaClass or KaProperty"}};
    for (const auto& [function, kind] : kinds) {
        const auto isValid = function;
        for (const wchar_t* const name : {L"_", L"_a1", L"x9", L"\u00E9t\u00E9", L"Pump_2"})
            EXPECT_EQ(isValid(name, 1), 1);
        for (const auto& [names, problem] : refused)
            for (const wchar_t* const name : names)
                ExpectThrows<KAXMLDomainError>([&] { isValid(name, isValid(name, 0) + 1); },
                                               kind + problem + name + L"'");
        ExpectThrows<KAXMLDomainError>([&] { isValid(L"", isValid(L"", 0) + 1); }, kind + L" names cannot be blank!");
        ExpectThrows<KAXMLLogicError>([&] { isValid(nullptr, 0); }, kind + L" names cannot be NULL!");
    }
}

TEST(Names, VersionsAreReadAndWritten) {
    CKaSchema schema(L"Plant", L"pl", nullptr);
    for (const std::wstring text :
         {L"1.0=01.00", L"123.456=123.456", L"1x.2=01.02", L"1.2.3=01.02", L" +7. 08=07.08"}) {
        schema.SetVersionString(text.substr(0, text.find(L'=')).c_str());
        EXPECT_EQ(schema.VersionString(), text.substr(text.find(L'=') + 1));
    }
    const std::wstring form = L" Format is MM.mm where MM is major version and mm is minor version.";
    const std::wstring place = L"CKaSchema::ParseVersionString";
    const Refused refused = {{{L"5"}, L"does not contain a '.'!"},
                             {{L"1234.5", L".5"}, L"does not have 1-3 numbers before the '.'!"},
                             {{L"5.", L"1.2345"}, L"does not have 1-3 numbers after the '.'!"},
                             {{L"a.1"}, L"The characters before the '.' must be numeric!"},
                             {{L"3.b", L"4.."}, L"The characters after the '.' must be numeric!"}};
    for (const auto& [texts, problem] : refused)
        for (const wchar_t* const text : texts)
            ExpectThrows<KAXMLFormatError>([&] { schema.SetVersionString(text); },
                                           std::wstring(L"CKaSchema::SetVersionString... '") + text + L"' " + problem +
                                               form);
    EXPECT_EQ(schema.VersionString(), L"04.08"); // a bad minor number comes too late for the major one
    ExpectThrows<KAXMLLogicError>([&] { schema.SetVersionString(L""); },
                                  L"Version string cannot be NULL or empty!" + form, place);
    ExpectThrows<KAXMLLogicError>([] { CKaSchema::ParseVersionString(nullptr, nullptr, nullptr); },
                                  L"pMinor and pMajor must be non-NULL", place);
}

} // namespace
} // namespace KAXML::Test

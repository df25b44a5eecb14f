#include "support/instance_recorder.h"

#include <sstream>

namespace KAXML::Test {
namespace {

TEST(StateHandler, KeepsTrackOfItsElementUntilAReset) {
    const struct {
        const wchar_t* name;
        const char* tags; // "/" starts an end tag; "!" is a reset
        std::vector<int> answers;
        const wchar_t* failure;
    } cases[] = {
        {L"", "a a /a b a /a /b /a", {NOCHANGE, NOCHANGE, NOCHANGE, POP}, L""},
        {L"a", "a x /anything /a /z", {NOCHANGE, POP, POP_UNHANDLED}, L""},
        {L"a", "/z ! b /b ! c /c", {POP_UNHANDLED, POP, POP}, L""},
        {L"a", "b", {}, L"Error at (.root.a): Unexpected element."},
        {L"", "a /a b", {POP}, L"Error at (.root.a): Unexpected element."},
        {L"", "a /b", {}, nullptr},
    };
    StateHandler root(nullptr, L"root");
    for (const auto& each : cases) {
        StateHandler handler(&root, each.name);
        std::vector<int> answers;
        const auto run = [&] {
            std::istringstream tags(each.tags);
            for (std::string tag; tags >> tag;)
                if (tag == "!")
                    handler.Reset();
                else if (tag[0] == '/')
                    answers.push_back(handler.TrackEnd(WideFromUtf8(tag.substr(1)).c_str()));
                else
                    handler.TrackStart(WideFromUtf8(tag).c_str());
        };
        if (each.failure == nullptr)
            ExpectThrows<KAXMLRuntimeError>(run, L"EndElement called on unexpected element");
        else if (*each.failure != L'\0')
            ExpectThrows<KAXMLFormatError>(run, each.failure);
        else
            run();
        EXPECT_EQ(answers, each.answers) << each.tags;
    }
    ExpectThrows<KAXMLRuntimeError>([&] { root.GetSaxHandler(); }, L"Asking for m_pSaxHandler when it is NULL");
}

} // namespace
} // namespace KAXML::Test

#include "support/instance_recorder.h"

#include <kaxml/kaxml/reader/instance_handlers.h>

#include <optional>
#include <tuple>

namespace KAXML::Test {
namespace {

// Writes its calls down and answers all tags as it is told.
struct FakeHandler final : StateHandler {
    FakeHandler(const char* its, std::string& log, int itsAnswer = 0, std::unique_ptr<StateHandler> itsNext = nullptr)
        : StateHandler(nullptr, L""), name(its), calls(log), answer(itsAnswer), next(std::move(itsNext)) {}
    ~FakeHandler() override { calls += "~" + name + " "; }
    START_ACTION StartElement(const XmlName& element, XMLAttributes& attributes,
                              std::unique_ptr<StateHandler>& nextHandler) override {
        std::wstring value;
        attributes.GetValue(L"x", value);
        return static_cast<START_ACTION>(Note("<" + Narrow(value), element, nextHandler));
    }
    void Characters(const wchar_t* text, std::size_t length) override {
        calls += name + ":" + Narrow(std::wstring_view(text, length));
    }
    END_ACTION EndElement(const XmlName& element, std::unique_ptr<StateHandler>& nextHandler) override {
        return static_cast<END_ACTION>(Note(">", element, nextHandler));
    }
    int Note(const std::string& tag, const XmlName& element, std::unique_ptr<StateHandler>& nextHandler) {
        EXPECT_TRUE(element.namespaceUri == L"u" && element.localName == L"b" && element.qualifiedName == L"p:b");
        EXPECT_EQ(nextHandler, nullptr);
        nextHandler = std::move(next);
        calls += name + tag + " ";
        return answer;
    }

    std::string name;
    std::string& calls;
    int answer;
    std::unique_ptr<StateHandler> next;
};

struct ContentHandler : testing::Test {
    void Push(const char* name, int answer, std::unique_ptr<StateHandler> next = nullptr) {
        handler->GetStateStack().Push(std::make_unique<FakeHandler>(name, calls, answer, std::move(next)));
    }
    HRESULT Start(ISAXAttributes* list) { return handler->raw_startElement(element, list); }
    HRESULT End() { return handler->raw_endElement(element); }

    std::string calls;
    const XmlName element{L"u", L"b", L"p:b"};
    FakeAttributes attributes;
    CKaSchema schema{L"S", L"s", L""};
    std::optional<CKAXMLSAXContentHandler> handler{std::in_place, &schema, nullptr, RequiredCallbacks(), 0u};
};

TEST_F(ContentHandler, ObeysAnAnswerOrRefusesIt) {
    const std::wstring stays = L"StartElement should never return a pNextHandler if START_ACTION is STATUSQUO";
    const std::wstring lacks = L"StartElement must return a pNextHandler if START_ACTION is PUSH_UNHANDLED or PUSH";
    const std::wstring noStart = L"StartElement returned an unrecognized START_ACTION";
    const std::wstring keeps = L"EndElement should never return a pNextHandler if END_ACTION is NOCHANGE";
    const std::wstring pops = L"EndElement should never return a pNextHandler if END_ACTION is POP or POP_UNHANDLED";
    const std::wstring noEnd = L"EndElement returned an unrecognized END_ACTION";
    // At the start or the end, the answer, a next handler, the failure, and the calls. At last the
    // handler then on top is named.
    const std::tuple<bool, int, bool, std::wstring, const char*> cases[] = {
        {true, STATUSQUO, false, L"", "A<1 A:"},
        {true, STATUSQUO, true, stays, "A<1 ~B A:"},
        {true, PUSH, true, L"", "A<1 B:"},
        {true, PUSH, false, lacks, "A<1 A:"},
        {true, PUSH_UNHANDLED, true, L"", "A<1 B<1 B:"},
        {true, PUSH_UNHANDLED, false, lacks, "A<1 A:"},
        {true, 1, false, noStart, "A<1 A:"},
        {true, 6, true, noStart, "A<1 ~B A:"},
        {false, NOCHANGE, false, L"", "A> A:"},
        {false, NOCHANGE, true, keeps, "A> ~B A:"},
        {false, POP, false, L"", "A> ~A C:"},
        {false, POP, true, pops, "A> ~B A:"},
        {false, POP_UNHANDLED, false, L"", "A> ~A C> C:"},
        {false, POP_UNHANDLED, true, pops, "A> ~B A:"},
        {false, REPLACE, true, L"", "A> ~A B:"},
        {false, 4, false, noEnd, "A> A:"},
    };
    for (const auto& [isStart, answer, hasNext, failure, expected] : cases) {
        SCOPED_TRACE(expected);
        handler.emplace(&schema, nullptr, RequiredCallbacks(), 0u);
        calls.clear();
        Push("C", NOCHANGE);
        Push("A", answer, hasNext ? std::make_unique<FakeHandler>("B", calls) : nullptr);
        const auto run = [&, isStart = isStart] { EXPECT_EQ(isStart ? Start(&attributes) : End(), S_OK); };
        failure.empty() ? run() : ExpectThrows<KAXMLLogicError>(run, failure);
        handler->raw_characters(L" ", 1);
        EXPECT_EQ(calls, std::string(expected) + " ");
    }
}

TEST_F(ContentHandler, FailsWithoutAHandlerOnTopAndDestroysTheRestTopDown) {
    const std::wstring none = L"GetStateStack().top() returned NULL in CKAXMLSAXContentHandler::raw_startElement";
    ExpectThrows<KAXMLRuntimeError>([&] { Start(&attributes); }, none);
    Push("A", NOCHANGE);
    Push("B", NOCHANGE);
    Push("C", REPLACE);
    ExpectThrows<KAXMLInvalidArgument>([&] { Start(nullptr); }, L"Passed NULL to XMLAttributes constructor");
    EXPECT_EQ(End(), S_OK) << "a missing successor shows at the next event";
    EXPECT_EQ(handler->raw_characters(L"\n", 1), S_OK) << "there is nothing to hand on";
    EXPECT_THROW(End(), KAXMLRuntimeError);
    EXPECT_THROW(handler->raw_characters(L"x", 1), KAXMLRuntimeError);
    ExpectThrows<KAXMLRuntimeError>([&] { Start(&attributes); }, none);
    handler.reset();
    EXPECT_EQ(calls, "C> ~C ~B ~A ") << "a handler may refer to those below it";
}

TEST(StateHandler, TracksOneElementUntilAReset) {
    StateHandler root(nullptr, L"root");
    StateHandler handler(&root, L"a");
    EXPECT_EQ(handler.TrackEnd(L"z"), POP_UNHANDLED) << "an end tag of the element around";
    handler.Reset();
    handler.TrackStart(L"b");
    EXPECT_EQ(handler.TrackEnd(L"b"), POP);
    ExpectThrows<KAXMLFormatError>([&] { handler.TrackStart(L"c"); }, L"Error at (.root.b): Unexpected element.");
    ExpectThrows<KAXMLRuntimeError>([&] { handler.TrackEnd(L"c"); }, L"EndElement called on unexpected element");
}

} // namespace
} // namespace KAXML::Test

#include "support/instance_recorder.h"

#include <set>

namespace KAXML::Test {
namespace {

// Not one of the library's exceptions.
struct ClientsOwn {};

TEST(InstanceCallbacks, ThrowThroughTheParse) {
    InstanceRecorder recorder;
    int callsLeft = 0;
    recorder.answer = [&](const std::string&) { return callsLeft-- == 0 ? throw ClientsOwn() : 0; };
    const std::string project = "<Project><Item/><Feeds sourceInstanceID='' targetInstanceID=''/></Project>";
    AtEverySliceSize([&] {
        for (int call = 0; call <= 7; ++call) { // the seventh is the report of the malformed tail
            callsLeft = call;
            recorder.make = nullptr;
            if (call == 7) // none of them, but the factory
                recorder.make = [](auto, int*) -> CKaInstance* { throw ClientsOwn(); };
            EXPECT_THROW(recorder.Parse(0, WideFromUtf8(InRoot(project) + "tail")), ClientsOwn);
            EXPECT_EQ(recorder.lines.size(), call == 7 ? 2 : static_cast<std::size_t>(call) + 1);
        }
    });
}

TEST(InstanceFactory, IsHeldToItsContract) {
    InstanceRecorder recorder;
    recorder.make = [](auto, int* isRelationship) {
        *isRelationship = 1;
        return new Counted<CKaInstance>(MachinesSchema().FindKaClass(L"Item", KA_ANY_CLASS_TYPE));
    };
    recorder.ExpectEverywhere(
        InRoot("<No sourceInstanceID='a' targetInstanceID='b'/>"),
        "begin ''\nKAXMLLogicError: Called HandleKAXML20Relationship on an instance that was not a relationship!\n");
}

TEST(InstanceDocument, NestsStructsAThousandDeepAndNoDeeper) {
    const auto document = [](std::size_t levels, const std::string& content) {
        // Structs of both kinds: every second one is a member of an array.
        std::string open = "<Root>";
        std::string close = "</Root>";
        for (std::size_t level = 2; level <= levels; ++level) {
            open += level % 2 == 0 ? "<Inner>" : "<Parts><Part>";
            close.insert(0, level % 2 == 0 ? "</Inner>" : "</Part></Parts>");
        }
        return InRoot("\n<Pump id='1'>" + open + content + close + "</Pump>");
    };
    const std::string values = Repeat(499, " Inner={ Parts=[ {") + " Inner={ Parts=[ ] }" + Repeat(499, " } ] }");
    InstanceRecorder recorder;
    recorder.ExpectEverywhere(document(1000, "<Parts/>"), "begin ''\ninstance Pump '1' Root={" + values +
                                                              " }\nend\nlog -3 Imported instances: 1\ndone\n");
    const std::string column = std::to_string(13 + 6 + 500 * (7 + 13)); // where the tag ends
    const std::string reason = "The document is nested deeper than 1000 levels";
    recorder.ExpectEverywhere(
        document(1001, ""), "begin ''\nerror SAX Parser failed at line 2, column " + column + " with error: " + reason +
                                "\nKAXMLRuntimeError: ParseKaInstanceXML: COM Error: Unspecified error. line 2, "
                                "column " +
                                column + ": " + reason + ". \n");
    recorder.ExpectEverywhere(InRoot("<Pump id='1'><Root><Parts>" + Repeat(1100, "<Part/>") + "</Parts></Root></Pump>"),
                              "begin ''\ninstance Pump '1' Root={ Parts=[" + Repeat(1100, " { }") +
                                  " ] }\nend\nlog -3 Imported instances: 1\ndone\n");
}

TEST(InstanceDocument, DeliversAMegabyteOfTextUnchanged) {
    const std::string text = Repeat(60'000, " line \xC3\xA9 \xF0\x9F\x99\x82\n");
    std::string quoted = Repeat(60'000, " line \xC3\xA9 \xF0\x9F\x99\x82\\n");
    quoted.resize(quoted.size() - 2); // the last line break is layout
    InstanceRecorder().ExpectEverywhere(
        InRoot("<Pump id='1'><Tag>" + text + "</Tag><Names><string><![CDATA[" + text + "]]></string></Names></Pump>"),
        "begin ''\ninstance Pump '1' Tag='" + quoted + "' Names=[ '" + quoted +
            "' ]\nend\nlog -3 Imported instances: 1\ndone\n");
}

// Each document stands beside the lines that reading it gives. In front of them may stand the flags
// of the parse, and the line of the callback that answers 1. A document with "bad" in its name has
// to fail.
TEST(InstanceCorpus, GivesTheExpectedEventsAndOutcome) {
    std::set<std::filesystem::path> documents;
    for (const auto& entry : std::filesystem::directory_iterator(KAXML_TEST_DATA_DIR "/instances"))
        if (entry.path().extension() == ".xml" && entry.path().stem().extension().empty())
            documents.insert(entry.path());
    EXPECT_GE(documents.size(), 30u);
    for (std::filesystem::path path : documents) {
        SCOPED_TRACE(path.filename());
        const std::string document = BytesOf(path);
        std::string expected = BytesOf(path.replace_extension(".expected"));
        const auto take = [&](const std::string& key) {
            const std::size_t end = expected.starts_with(key) ? expected.find('\n') : 0;
            const std::string value = end > 0 ? expected.substr(key.size(), end - key.size()) : "";
            expected.erase(0, end > 0 ? end + 1 : 0);
            return value;
        };
        const std::string flags = take("flags ");
        InstanceRecorder recorder(flags.empty() ? 0 : static_cast<unsigned int>(std::stoul(flags)));
        recorder.answer = [refused = take("refuse ")](const std::string& line) { return line == refused ? 1 : 0; };
        EXPECT_EQ(!expected.ends_with("done\n"), path.string().find("bad") != std::string::npos);
        recorder.ExpectEverywhere(document, expected);
    }
}

} // namespace
} // namespace KAXML::Test

#include <kaxml/kaxml/reader/instance_handlers.h>
#include <kaxml/kaxml/reader/parse_driver.h>

#include "support/instance_recorder.h"

namespace KAXML::Test {
namespace {

TEST(InstanceHandlers, RefuseNullArguments) {
    const auto expect = [](auto make, const wchar_t* message) { ExpectThrows<KAXMLInvalidArgument>(make, message); };
    expect([] { KaInstanceXMLHandler(nullptr); }, L"Passed NULL CKAXMLSAXContentHandler into KaInstanceXMLHandler");
    expect([] { PropertiesHandler(nullptr, nullptr); }, L"Passed NULL pKaInstance into PropertiesHandler constructor");
    expect([] { ArrayHandler(nullptr, nullptr); }, L"Passed NULL pArrayValue into ArrayHandler constructor");
    expect([] { StructHandler(nullptr, nullptr); }, L"Passed NULL pStructValue to StructHandler constructor");
    expect([] { RelationshipHandler(nullptr, nullptr); },
           L"Passed NULL pRelationship into RelationshipHandler constructor");
}

TEST(InstanceHandlers, RefuseTagsThatOthersShouldHaveTaken) {
    CKAXMLSAXContentHandler sax(&MachinesSchema(), nullptr, RequiredCallbacks(), 0);
    KaInstanceXMLHandler root(&sax);
    std::unique_ptr<StateHandler> next;
    InstanceHandler instance(&root);
    instance.TrackStart(L"Pump");
    ExpectThrows<KAXMLRuntimeError>([&] { instance.EndElement(L"", L"Pump", L"", next); },
                                    L"Error at (.KaInstanceXML.Pump): NULL m_pKaInstance in EndElement");
    KaArrayValue spares(MachinesSchema().FindKaClass(L"Pump", KA_ANY_CLASS_TYPE)->FindProperty(L"Spares"));
    ArrayHandler array(&root, &spares);
    array.TrackStart(L"Motor");
    ExpectThrows<KAXMLLogicError>([&] { array.EndElement(L"", L"Motor", L"", next); },
                                  L"The StructHandler should have gotten the EndElement message, not us");
    KaRelationshipInstance feeds(MachinesSchema().FindKaRelationshipClass(L"Feeds", KA_ANY_CLASS_TYPE));
    sax.GetStateStack().Push(std::make_unique<RelationshipHandler>(&root, &feeds));
    StateHandler& ends = *sax.GetStateStack().Top();
    EXPECT_EQ(ends.EndElement(L"", L"KaSource", L"", next), NOCHANGE);
    EXPECT_EQ(ends.EndElement(L"", L"KaTarget", L"", next), REPLACE);
    EXPECT_EQ(next->FormatPathMessage(L""), L"Error at (.KaInstanceXML.): ") << "the successor has the same parent";
    ExpectThrows<KAXMLLogicError>([&] { ends.EndElement(L"", L"KaTarget", L"", next); },
                                  L"RelationshipHandler::EndElement called with an invalid state");
    FakeAttributes none;
    ExpectThrows<KAXMLLogicError>([&] { sax.raw_startElement(L"", 0, L"x", 1, L"x", 1, &none); },
                                  L"RelationshipHandler::StartElement called with an invalid state");
}

// Not one of the library's exceptions; knows the object that was thrown.
struct ClientsOwn {
    ClientsOwn() { s_thrown = this; }
    inline static const ClientsOwn* s_thrown = nullptr;
};

TEST(InstanceCallbacks, ThrowThroughTheParse) {
    InstanceRecorder recorder;
    int callsLeft = 0;
    recorder.answer = [&](const std::string&) { return callsLeft-- == 0 ? throw ClientsOwn() : 0; };
    const auto expectOwn = [&](const std::string& document, std::size_t lines) {
        try {
            recorder.Parse(0, WideFromUtf8(document));
            ADD_FAILURE();
        } catch (const ClientsOwn& error) {
            EXPECT_EQ(&error, ClientsOwn::s_thrown);
        }
        EXPECT_EQ(recorder.lines.size(), lines);
    };
    AtEverySliceSize([&] {
        for (int call = 0; call < 7; ++call) { // the last one is the report of the malformed tail
            callsLeft = call;
            expectOwn(InRoot("<Project><Item/><Feeds sourceInstanceID='' targetInstanceID=''/></Project>") + "tail",
                      static_cast<std::size_t>(call) + 1);
        }
        recorder.make = [](auto, int*) -> CKaInstance* { throw ClientsOwn(); };
        expectOwn(InRoot("<Item/>") + "tail", 1);
        recorder.make = nullptr;
    });
}

TEST(InstanceCallbacks, CountTheInstanceThatWasRefused) {
    ParseCallbacks callbacks = RequiredCallbacks();
    callbacks.parsedInstance = [](CKaSchema*, void*, CKaInstance* instance) {
        return instance->InstanceID() == L"2" ? 1 : 0;
    };
    CKAXMLSAXContentHandler sax(&MachinesSchema(), nullptr, callbacks, 0);
    InstanceRecorder factory;
    sax.SetKaInstanceFactory(&factory);
    sax.GetStateStack().Push(std::make_unique<KaInstanceXMLHandler>(&sax));
    std::unique_ptr<ISAXXMLReader> reader;
    CreateSAXXMLReader(reader);
    reader->putContentHandler(&sax);
    const std::wstring document = WideFromUtf8(InRoot("<Item id='1'/><Item id='2'/><Item id='3'/>"));
    EXPECT_THROW(reader->parse(document.c_str()), KAXMLRuntimeError);
    EXPECT_EQ(sax.GetImportedCount(), 2);
    EXPECT_EQ(Counted<CKaInstance>::s_alive, 0) << "destroyed before the handlers are";
}

TEST(InstanceFactory, IsHeldToItsContract) {
    CKaClass* const item = MachinesSchema().FindKaClass(L"Item", KA_ANY_CLASS_TYPE);
    InstanceRecorder recorder(SKIP_UNRECOGNIZED_CLASSES);
    recorder.make = [&](const std::wstring& name, int* isRelationship) {
        *isRelationship = name != L"Item";
        return name == L"None" ? nullptr : new Counted<CKaInstance>(item);
    };
    recorder.ExpectEverywhere(InRoot("<None/><Item id='1'/>"),
                              "begin ''\ninstance Item '1'\nend\nlog -3 Skipping unrecognized KaClass <None>\n"
                              "log -3 Imported instances: 1\ndone\n");
    recorder.ExpectEverywhere(
        InRoot("<No sourceInstanceID='a' targetInstanceID='b'/>"),
        "begin ''\nKAXMLLogicError: Called HandleKAXML20Relationship on an instance that was not a relationship!\n");
    recorder.ExpectEverywhere(
        InRoot("<No sourceInstanceID='a'/>"),
        "begin ''\nKAXMLInvalidArgument: Passed NULL pRelationship into RelationshipHandler constructor\n");
    ParseRequest request;
    request.schema = &MachinesSchema();
    request.callbacks = RequiredCallbacks();
    for (const char* content : {"<Item/>", "<Project/>"}) {
        const std::wstring document = WideFromUtf8(InRoot(content));
        request.xmlSource = document.c_str();
        ExpectThrows<KAXMLRuntimeError>([&] { RunParse(request, &CreateSAXXMLReader); },
                                        L"CKAXMLSAXContentHandler has NULL m_pKaInstanceFactory");
    }
    EXPECT_NO_THROW(RunParse((request.xmlSource = L"<Other/>", request), &CreateSAXXMLReader));
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

TEST(InstanceDocument, NestsProjectsTenThousandDeep) {
    const std::size_t depth = 10'000;
    InstanceRecorder().ExpectEverywhere(
        InRoot(Repeat(depth, "<Project>") + "<Item id='1'/>" + Repeat(depth, "</Project>")),
        "begin ''\n" + Repeat(depth, "open Project\n") + "instance Item '1'\n" + Repeat(depth, "close Project\n") +
            "end\nlog -3 Imported instances: 1\ndone\n");
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

} // namespace
} // namespace KAXML::Test

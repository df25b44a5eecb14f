#include "platform/test_support.h"
#include "support/expectations.h"

#include <chrono>
#include <latch>
#include <map>
#include <thread>

namespace KAXML::Test {
namespace {

thread_local std::wstring t_seen; // all that this thread was told

// Two callbacks to switch between.
template <int> void Note(LOG_SEV, const wchar_t* category, const wchar_t* message) {
    t_seen += std::wstring(category) + L": " + message + L"\n";
}

void Parse(CKaSchema& schema, int isUrl, const std::wstring& source) {
    KaParseCallables callables;
    callables.instance = [](CKaInstance& parsed) { parsed.AppendValueToString(t_seen); };
    try {
        (isUrl != 0 ? &ParseKaInstanceFile : &ParseKaInstanceText)(source.c_str(), &schema, callables, nullptr, 0);
    } catch (const KAXMLException& error) {
        t_seen += std::wstring(L"thrown: ") + error.Message() + L"\n";
    }
}

// The work of one thread, on things of its name. Returns all that it saw, which is the same every
// time.
std::wstring Work(const std::wstring& name, const TemporaryFolder& folder) {
    const std::wstring path = WideFromUtf8((folder / Narrow(name)).string());
    t_seen.clear();
    Log(LOG_INFO, name, std::wstring(3000, name.front()));
    auto* const machines = new CKaSchema(L"temporary", L"temporary", nullptr);
    machines->ReadXML(L"" KAXML_TEST_DATA_DIR "/instances/Machines.01.00.kaschema.xml");
    CKaSchemaReference reference(machines);
    CKaSchema built(name, L"own", name);
    built.AddReference(reference);
    built.CreateKaClass(name.c_str(), L"", KA_DOMAIN_CLASS)->SetBaseClass(L"m:Pump");
    built.WriteXML(path.c_str());
    CKaSchema read(L"temporary", L"temporary", nullptr);
    read.ReadXML(path.c_str()); // finds the referenced file by the environment
    CKaSchema copy(read);
    copy.WriteXML(path.c_str());
    t_seen += WideFromUtf8(BytesOf(folder / Narrow(name)));
    for (const wchar_t* const content :
         {L"<Flow>1.5</Flow><Motor><Power/></Motor>", L"<Flow/>", L"<None/>", L"</Flow>"}) {
        const std::wstring document = std::wstring(L"<KaInstanceXML xmlns='") + KAXML_NAMESPACE_URI + L"'><" + name +
                                      L">" + content + L"</" + name + L"></KaInstanceXML>";
        Parse(copy, 0, document);
        Parse(copy, 1, folder.Write(Narrow(name) + ".xml", Narrow(document)));
    }
    Parse(copy, 1, path + L"/missing");
    CKaValue* const value = CKaSchema::GetRecycledKaValue(copy.GetKaClassByIndex(0)->FindProperty(L"Flow"));
    value->AppendAsXml(t_seen);
    value->SetValue(name);
    CKaSchema::RecycleKaValue(value);
    return t_seen + CreateGuid()[14]; // the digit that does not change
}

TEST(Threads, SeeNothingOfEachOther) {
    setenv("KASCHEMA_PATH", KAXML_TEST_DATA_DIR "/instances", 1);
    const TemporaryFolder folder;
    std::map<std::wstring, std::vector<std::wstring>> seen{{L"Ash", {}}, {L"Birch", {}}, {L"Fir", {}}, {L"Oak", {}}};
    SetLoggingCallback(&Note<0>);
    const std::jthread switching([other = LoggingCallback{&Note<1>}](const std::stop_token& end) mutable {
        for (; !end.stop_requested(); std::this_thread::sleep_for(std::chrono::microseconds(20)))
            other = SetLoggingCallback(other);
    });
    std::latch start(4); // the first calls of all meet the library as it was loaded
    std::vector<std::jthread> threads;
    for (auto& [name, texts] : seen)
        threads.emplace_back([&, &name = name, &texts = texts] {
            for (start.arrive_and_wait(); texts.size() < 20;)
                texts.push_back(Work(name, folder));
        });
    threads.clear(); // waits for them
    for (const auto& [name, texts] : seen)
        for (const std::wstring& text : texts)
            EXPECT_EQ(Narrow(text), Narrow(Work(name, folder)));
}

} // namespace
} // namespace KAXML::Test

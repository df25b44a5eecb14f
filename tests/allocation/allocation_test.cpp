#include "allocation/failing_memory.h"
#include "support/instance_recorder.h"
#include "support/model_compare.h"

#include <kaxml/kaxml/core/format.h>
#include <kaxml/platform/environment.h>
#include <kaxml/platform/file.h>

#include <libxml/xmlerror.h>
#include <numeric>

namespace KAXML::Test {
namespace {

const std::wstring kData = L"" KAXML_TEST_DATA_DIR "/allocation/";

auto Read(const wchar_t* file) { return ReadModel(kData + file, kData); }

const CKaSchema kPlant = *Read(L"Plant.01.00.kaschema.xml");

std::wstring Formatted() { return FormatText(L"%s, %S and %d", {L"wide", "narrow", 1234567}); }

// What the operations work on.
struct Model {
    inline static const TemporaryFolder s_folder;

    CKaSchema schema = kPlant;
    CKaCustomAttribute& note = *schema.GetKaCustomAttribute(0);
    std::wstring text = L"kept __x0020__ < 3";
    std::wstring file = s_folder.Write("saved.xml", "old");

    // Ends with values in the pool.
    Model() { const CKaInstance copy(note); }

    CKaClass& Pump() { return *schema.GetKaClassByIndex(0); }
    CKaProperty* Property(const wchar_t* name) { return note.GetKaClass()->FindProperty(name); }
    void Refer(CKaSchema* referenced) { schema.AddReference(*std::make_unique<CKaSchemaReference>(referenced)); }
    void Parse(int isUrl, const std::wstring& source) {
        InstanceRecorder recorder;
        recorder.Parse(isUrl, source);
        text = WideFromUtf8(std::accumulate(recorder.lines.begin(), recorder.lines.end(), std::string()));
    }
};

// Makes an item and gives it away.
template <typename Item, typename Take, typename... Arguments> void Give(Take take, const Arguments&... arguments) {
    auto item = std::make_unique<Item>(arguments...);
    take(item.get());
    static_cast<void>(item.release());
}

struct Operation {
    const char* name;
    void (*run)(Model& m);
};

const Operation kOperations[] = {
    {"ConstructSchema", [](Model& m) { m.text = CKaSchema(L"Other", L"oth", L"no classes").OfficialFilename(); }},
    {"ConstructClass", [](Model& m) { m.text = CKaRelationshipClass(L"Connects", &m.schema, nullptr).FullName(); }},
    {"CreateClass", [](Model& m) { m.schema.CreateKaClass(L"Pump", L"numbered", KA_DOMAIN_CLASS); }},
    {"AddClass",
     [](Model& m) { Give<CKaClass>([&](auto* c) { m.schema.AddKaClass(c); }, L"Pump", &m.schema, nullptr); }},
    {"AddProperty", [](Model& m) { m.Pump().AddKaProperty(L"Position", L"Entry", L"on the floor"); }},
    {"RenameClass", [](Model& m) { m.Pump().SetTypeName(L"CentrifugalPump"); }},
    {"SetBaseClass", [](Model& m) { m.Pump().SetBaseClass(L"b:Note"); }},
    {"CopyClass",
     [](Model& m) { *m.schema.GetKaRelationshipClass(0) = CKaRelationshipClass(*m.schema.GetKaRelationshipClass(0)); }},
    {"CopySchema", [](Model& m) { m.schema = CKaSchema(m.schema); }},
    {"AddReference", [](Model& m) { Give<CKaSchema>([&](auto* s) { m.Refer(s); }, L"Added", L"add", L"later"); }},
    {"ReadSchema", [](Model& m) { m.schema = *Read(L"Plant.01.00.kaschema.xml"); }},
    {"ReadOlderSchema", [](Model& m) { m.schema = *Read(L"Older.01.00.kaschema.xml"); }},
    {"ReadRefusedSchema", [](Model& m) { m.schema = *Read(L"Refused.01.00.kaschema.xml"); }},
    {"SaveSchema", [](Model& m) { m.schema.WriteXML(m.file.c_str()); }},
    {"SaveNowhere", [](Model& m) { m.schema.WriteXML((kData + L"none/saved.xml").c_str()); }},
    {"ParseText", [](Model& m) { m.Parse(0, WideFromUtf8(InRoot("<Kühler id='one'><Größe>1.5</Größe></Kühler>"))); }},
    {"ParseFile", [](Model& m) { m.Parse(1, kData + L"machines.kainstance.xml"); }},
    {"ParseRefusedText", [](Model& m) { m.Parse(0, L"<KaInstanceXML>&none;</KaInstanceXML>"); }},
    {"CopyInstance", [](Model& m) { m.note = CKaCustomAttribute(m.note); }},
    {"AppendInstance", [](Model& m) { m.note.AppendAsXml(*std::make_unique<std::wstring>(9, L'x'), L"a='b'"); }},
    {"SetText", [](Model& m) { m.note.SetPropertyValue(L"Text", std::wstring(200, L'P')); }},
    {"GetNumberOutOfRange", [](Model& m) { m.note.GetPropertyValue(L"Number", std::make_unique<long>().get()); }},
    {"AddValue", [](Model& m) { Give<CKaValue>([&](auto* v) { m.note.AddKaValue(v); }, m.Property(L"Number"), L"2"); }},
    {"RecycleValue", [](Model& m) { Give<CKaValue>(&CKaSchema::RecycleKaValue, m.Property(L"Number"), L"unused"); }},
    {"ReuseValue", [](Model& m) { delete CKaSchema::GetRecycledKaValue(m.Property(L"Entries")); }},
    {"MakeArray", [](Model& m) { m.Pump().GetArrayFromCustomAttribute(m.note.GetKaClass(), L"Entries", 1); }},
    {"AddToArray", [](Model& m) { m.schema.CreateArrayMemberForCustomAttribute(m.note.GetKaClass(), L"Entries"); }},
    {"Throw", [](Model&) { throw KAXMLFormatError(L"What went wrong", L"where it did"); }},
    {"CopyException", [](Model& m) { m.text = KAXMLException(*std::make_unique<KAXMLLogicError>(L"Why")).Message(); }},
    {"Log", [](Model&) { Log(LOG_WARNING, L"Category", L"a message"); }},
    {"FormatMessage", [](Model& m) { m.text = Formatted(); }},
    {"CurrentFolder", [](Model& m) { GetCurrentDirectoryW(m.text); }},
    {"SearchFile", [](Model& m) { SearchPathW(L"none;" + kData, L"Base.01.00.kaschema.xml", m.text); }},
    {"CanonicalPath", [](Model& m) { m.text = CanonicalPath(kData + L"../schemas"); }},
    {"DecodeTag", [](Model& m) { DecodeFromValidXmlTag(m.text); }},
    {"EscapeText", [](Model& m) { ConvertToXmlString(m.text.c_str(), m.text); }},
    {"MakeIdentifier", [](Model& m) { GenerateKaInstanceXMLIdentifier(L"a class", 7, m.text); }},
};

// Runs an operation of which an allocation fails, and perhaps all behind it. Whether it threw; what is
// no documented exception ends the program.
bool Throws(const Operation& operation, Model& model, long failure, bool goesOn) noexcept {
    bool throws = true;
    g_allocations = {failure, goesOn, 0, g_allocations.liveBlocks};
    try {
        operation.run(model);
        throws = false;
    } catch (const std::bad_alloc&) {
    } catch (const KAXMLException&) {
    } catch (const _com_error&) {
    }
    g_allocations = {0, false, g_allocations.count, g_allocations.liveBlocks};
    return throws;
}

// Leaves out what is kept for later on purpose.
long LiveBlocks() {
    CKaSchema::FreeRecycledValues();
    xmlResetLastError();
    return g_allocations.liveBlocks;
}

struct AllocationFailure : testing::TestWithParam<Operation> {
    AllocationFailure() {
        SetLoggingCallback([](LOG_SEV, const wchar_t*, const wchar_t* text) { std::wstring(text) += L'.'; });
        CurrentFileCalls().fsync = [](int) { return 0; };
    }

    static void ExpectEqual(Model& found, Model& expected, const std::string& expectedFile) {
        EXPECT_EQ(FirstDifference(expected.schema, found.schema), "");
        EXPECT_EQ(Narrow(found.text), Narrow(expected.text));
        EXPECT_EQ(BytesOf(found.file), expectedFile);
        EXPECT_EQ(Model::s_folder.FileCount(), 1U);
    }

    // Returns whether any allocation failed.
    bool Try(long failure, bool goesOn) {
        SCOPED_TRACE(failure);
        const long liveBlocks = LiveBlocks();
        auto model = std::make_unique<Model>();
        const bool throws = Throws(GetParam(), *model, failure, goesOn);
        const bool anyFailed = g_allocations.count >= failure;
        if (throws) {
            ExpectEqual(*model, m_untouched, "old");
            EXPECT_EQ(Throws(GetParam(), *model, 0, false), m_throwsAnyway);
        }
        ExpectEqual(*model, m_done, m_doneFile);
        model.reset();
        EXPECT_EQ(LiveBlocks(), liveBlocks);
        return anyFailed;
    }

    Model m_untouched;
    Model m_done;
    const bool m_throwsAnyway = Throws(GetParam(), m_done, 0, false);
    const std::string m_doneFile = BytesOf(m_done.file);
};

// libxml2 notes on standard error what it had no memory for.
TEST_P(AllocationFailure, LeavesNothingBehind) {
    long failures = 0;
    for (const bool goesOn : {false, true})
        for (long n = 1; !HasFailure() && Try(n, goesOn); ++n)
            ++failures;
    RecordProperty("failures", std::to_string(failures));
}

INSTANTIATE_TEST_SUITE_P(All, AllocationFailure, testing::ValuesIn(kOperations),
                         [](const auto& operation) { return operation.param.name; });

} // namespace
} // namespace KAXML::Test

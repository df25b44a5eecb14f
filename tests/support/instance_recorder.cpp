#include "support/instance_recorder.h"

#include <regex>

namespace KAXML::Test {

namespace {

std::string Quoted(const std::wstring& text) {
    std::string quoted = "'";
    for (const char c : Narrow(text))
        quoted += c == '\n' ? "\\n" : c == '\t' ? "\\t" : c == '\r' ? "\\r" : std::string(1, c);
    return quoted + "'";
}

std::string ValuesOf(const CKaInstance& instance);

std::string ContentOf(const KaValueBase* value) {
    if (const auto* primitive = dynamic_cast<const CKaValue*>(value))
        return primitive->IsNull() ? "null" : Quoted(primitive->Value());
    if (const auto* structValue = dynamic_cast<const KaStructValue*>(value))
        return "{" + ValuesOf(*structValue->GetValue()) + " }";
    const auto& array = dynamic_cast<const KaArrayValue&>(*value);
    std::string members = "[";
    for (unsigned int i = 0; i < array.GetLength(); ++i)
        members += " " + ContentOf(array.GetValue(i));
    return members + " ]";
}

std::string ValuesOf(const CKaInstance& instance) {
    std::string values;
    for (unsigned int i = 0; i < instance.GetKaValueCount(); ++i)
        values += " " + Narrow(instance.GetKaValue(i)->PropertyName()) + "=" + ContentOf(instance.GetKaValue(i));
    return values;
}

// The class and the id; of a generated one only the form of its random part.
std::string HeadOf(const CKaInstance& instance) {
    static const std::regex uuid("[0-9a-f]{8}-[0-9a-f]{4}-4[0-9a-f]{3}-[89ab][0-9a-f]{3}-[0-9a-f]{12}'$");
    return Narrow(instance.TypeName()) + " " + std::regex_replace(Quoted(instance.InstanceID()), uuid, "UUID'");
}

std::string AttributesOf(XMLAttributes* attributes) {
    std::string text;
    std::wstring value;
    for (const wchar_t* name : {L"scope", L"name", L"note"})
        if (attributes != nullptr && attributes->GetValue(std::wstring(name), value) == 1)
            text += " " + Narrow(name) + "=" + Quoted(value);
    return text;
}

void Cut(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos;)
        text.erase(at, text.find(to, at + from.size()) - at);
}

} // namespace

std::string Repeat(std::size_t count, const std::string& text) {
    std::string repeated;
    while (count-- > 0)
        repeated += text;
    return repeated;
}

std::string InRoot(const std::string& content) {
    return "<KaInstanceXML xmlns='" + Narrow(KAXML_NAMESPACE_URI) + "'>" + content + "</KaInstanceXML>";
}

ParseCallbacks RequiredCallbacks() {
    ParseCallbacks callbacks;
    callbacks.parsedInstance = [](CKaSchema*, void*, CKaInstance*) { return 0; };
    callbacks.parsedRelationship = [](CKaSchema*, void*, KaRelationshipInstance*) { return 0; };
    return callbacks;
}

CKaSchema& MachinesSchema() {
    static CKaSchema schema(L"temporary", L"temporary", nullptr);
    static const int status = schema.ReadXML(L"" KAXML_TEST_DATA_DIR "/instances/Machines.01.00.kaschema.xml");
    EXPECT_EQ(status, 0);
    return schema;
}

int InstanceRecorder::Note(const std::string& line) {
    EXPECT_FALSE(m_hasFailed) << line;
    lines.push_back(line);
    m_hasFailed = true; // should the answer be an exception
    const int result = answer ? answer(line) : 0;
    m_hasFailed = result != 0;
    return result;
}

CKaInstance* InstanceRecorder::CreateKaInstance(const wchar_t* namespaceUri, const wchar_t* className,
                                                int* isRelationship) {
    EXPECT_FALSE(m_hasFailed) << Narrow(className);
    EXPECT_EQ(*isRelationship, 0);
    m_namespaceUri = namespaceUri;
    if (make)
        return make(className, isRelationship);
    if (CKaRelationshipClass* found = MachinesSchema().FindKaRelationshipClass(className, KA_ANY_CLASS_TYPE))
        return *isRelationship = 7, new Counted<KaRelationshipInstance>(found);
    CKaClass* const kaClass = MachinesSchema().FindKaClass(className, KA_ANY_CLASS_TYPE);
    return kaClass != nullptr ? new Counted<CKaInstance>(kaClass) : nullptr;
}

int InstanceRecorder::Parse(int isUrl, const std::wstring& source) {
    lines.clear();
    m_hasFailed = false;
    struct CountCheck {
        ~CountCheck() { EXPECT_EQ(Counted<CKaInstance>::s_alive + Counted<KaRelationshipInstance>::s_alive, 0); }
    } check;
    static constexpr auto note = [](CKaSchema* schema, void* self, const std::string& line) {
        EXPECT_EQ(schema, &MachinesSchema());
        return static_cast<InstanceRecorder*>(self)->Note(line);
    };
    return ParseKaInstanceXML(
        isUrl, source.c_str(), &MachinesSchema(), this,
        [](CKaSchema* schema, void* self, const wchar_t* scope, XMLAttributes* attributes) {
            return note(schema, self, "begin " + Quoted(scope) + AttributesOf(attributes));
        },
        [](CKaSchema* schema, void* self, CKaInstance* instance) {
            const std::wstring& uri = static_cast<InstanceRecorder*>(self)->m_namespaceUri;
            const std::string prefix = uri == KAXML_NAMESPACE_URI ? "" : "{" + Narrow(uri) + "}";
            return note(schema, self, "instance " + prefix + HeadOf(*instance) + ValuesOf(*instance));
        },
        [](CKaSchema* schema, void* self, KaRelationshipInstance* found) {
            const std::string ends = " from " + Quoted(found->GetSourceID()) + " to " + Quoted(found->GetTargetID());
            return note(schema, self, "relationship " + HeadOf(*found) + ends + ValuesOf(*found));
        },
        [](CKaSchema* schema, void* self, bool isStart, const wchar_t* name, XMLAttributes* attributes) {
            EXPECT_EQ(attributes != nullptr, isStart);
            return note(schema, self, (isStart ? "open " : "close ") + Narrow(name) + AttributesOf(attributes));
        },
        [](CKaSchema* schema, void* self) { return note(schema, self, "end"); },
        [](const wchar_t* report, void* self) { note(&MachinesSchema(), self, "error " + Narrow(report)); }, this,
        flags);
}

std::string InstanceRecorder::Run(int isUrl, const std::wstring& source) {
    MachinesSchema();
    const NothingPrinted nothing;
    const LogRecorder log;
    std::string outcome = "done";
    try {
        EXPECT_EQ(Parse(isUrl, source), 0);
    } catch (const KAXMLException& error) {
        outcome = testing::internal::GetTypeName(typeid(error)).substr(sizeof("KAXML::") - 1) + ": " +
                  Narrow(error.Message());
    }
    EXPECT_EQ(log.Messages(LOG_ERROR).size(), outcome == "done" ? 0u : 1u);
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    for (const LogRecorder::Entry& entry : log.Entries())
        if (entry.category == L"KAXML")
            text += "log " + std::to_string(entry.severity) + " " + Narrow(entry.message) + "\n";
    return text + outcome + "\n";
}

void InstanceRecorder::ExpectEverywhere(const std::string& document, const std::string& expected) {
    unsetenv("DO_NOT_DELETE_KAINSTANCEXML_TEMP_FILE");
    const TemporaryFolder folder;
    const std::wstring path = folder.Write("document.xml", document);
    const std::wstring text = WideFromUtf8(document);
    AtEverySliceSize([&] {
        for (const int isUrl : {0, 1}) {
            std::string outcome = Run(isUrl, isUrl != 0 ? path : text);
            Cut(outcome, isUrl != 0 ? ". If DO_NOT_DELETE" : ". Set environment variable DO_NOT_DELETE", "\n");
            Cut(outcome, " " + Narrow(path) + ".", " ");
            EXPECT_EQ(outcome, expected);
        }
    });
}

} // namespace KAXML::Test

#include "support/instance_recorder.h"

#include <kaxml/platform/xml_parser.h>

#include <algorithm>
#include <fstream>
#include <regex>

namespace KAXML::Test {
namespace {

constexpr std::size_t kLargeText = 200'000'000;

// Part of a document: a text again and again, "%" standing for its number.
struct Repeated {
    std::size_t count;
    std::string text;

    void Write(std::ostream& out) const {
        const std::size_t at = std::min(text.find('%'), text.size());
        for (std::size_t i = 0; i < count; ++i) {
            out << text.substr(0, at);
            if (at < text.size())
                out << std::to_string(i) << text.substr(at + 1);
        }
    }
};
const Repeated kLarge{kLargeText / 100, std::string(100, 'x')};

struct Case {
    const char* what;
    std::string opening;
    std::vector<Repeated> content;
    std::string closing;
    std::string outcome;
};

std::string Described(const std::wstring& text) {
    const bool isLarge = text.size() == kLargeText && std::count(text.begin(), text.end(), L'x') == kLargeText;
    return isLarge ? "200 MB" : Narrow(text.substr(0, 100));
}

struct CountedFactory final : CKaSchemaInstanceFactory {
    using CKaSchemaInstanceFactory::CKaSchemaInstanceFactory;
    CKaInstance* CreateInstance(CKaClass* kaClass) override { return new Counted<CKaInstance>(kaClass); }
};

// InstanceRecorder keeps all that it is told. This is the numbers of instances and projects, the last
// instance's id, the number of its values and the last one of them.
std::string OutcomeOf(const std::wstring& path) {
    std::size_t instances = 0, projects = 0;
    std::string last;
    KaParseCallables callables;
    callables.projectBegin = [&](const XMLAttributes&) { ++projects; };
    callables.instance = [&](CKaInstance& instance) {
        ++instances;
        last = Described(instance.InstanceID());
        if (const unsigned int count = instance.GetKaValueCount()) {
            const KaValueBase* const value = instance.GetKaValue(count - 1);
            last += " " + std::to_string(count) + " " + Narrow(value->PropertyName());
            if (const auto* primitive = dynamic_cast<const CKaValue*>(value))
                last += "=" + Described(primitive->Value());
        }
    };
    CountedFactory factory(&MachinesSchema());
    try {
        ParseKaInstanceFile(path.c_str(), &MachinesSchema(), callables, &factory,
                            SKIP_UNRECOGNIZED_CLASSES | IGNORE_UNRECOGNIZED_PROPERTIES);
    } catch (const KAXMLRuntimeError& error) {
        return std::regex_replace(Narrow(error.Message()), std::regex("^.* column \\d+: (.*)\\. /.*$"), "$1");
    }
    return std::to_string(instances) + " " + std::to_string(projects) + " " + last;
}

const std::string kTooManyNames = "The document has more than 250000 different names";
const std::string kTooManyAttributes = "The document has more than 100000 attributes in one element";
const std::string kTooManyDeclarations = "The document has more than 10000 namespace declarations in force";

// What has a limit is taken up to it and refused behind it; where the start tag at fault is not even
// finished, before it is read to its end. The rest has none.
const Case kCases[] = {
    {"Attributes", "<Item", {{kMaxAttributes - 1, " a%=''"}}, " id='I'/>", "1 0 I"},
    {"TooManyAttributes", "<Item", {{kMaxAttributes, " a%=''"}}, " id='I'/>", kTooManyAttributes},
    // One of them is the root's.
    {"Declarations", "<Item", {{kMaxDeclarations - 1, " xmlns:n%='u'"}}, " id='I'/>", "1 0 I"},
    {"TooManyDeclarations", "<Item", {{kMaxDeclarations, " xmlns:n%='u'"}}, " id='I'/>", kTooManyDeclarations},
    {"UnfinishedTag", "<Item", {{100 * kMaxDeclarations, " xmlns:n%='u'"}}, " <malformed", kTooManyDeclarations},
    // The parser and the rest of the document have names as well.
    {"Names", "<Item id='I'>", {{kMaxNames - 20, "<N%/>"}}, "<Tag>t</Tag></Item>", "1 0 I 1 Tag=t"},
    {"TooManyNames", "<Item id='I'>", {{kMaxNames, "<N%/>"}}, "</Item>", kTooManyNames},
    {"Depth", "<No>", {{1'000'000, "<a>"}, {1'000'000, "</a>"}}, "</No>", "0 0 "},
    {"NestedProjects", Repeat(10'000, "<Project>"), {{1, "<Item id='I'/>"}}, Repeat(10'000, "</Project>"), "1 10000 I"},
    {"Projects", "", {{10'001, "<Project a='%'/>"}}, "", "0 10001 "},
    {"Instances", "", {{1'000'001, "<Item id='%'/>"}}, "", "1000001 0 1000000"},
    {"ValuesOfOneProperty", "<Pump id='I'>", {{100'001, "<Tag>%</Tag>"}}, "</Pump>", "1 0 I 1 Tag=100000"},
    {"PropertiesBehindSkippedOnes",
     "<Item><Tag/></Item><Item id='I'>",
     {{100, "<N%/>"}, {9, "<Tag>%</Tag>"}},
     "</Item>",
     "2 0 I 1 Tag=8"},
    {"ArraysOfOneName", "<Pump id='I'>", {{100'000, "<Names/>"}}, "</Pump>", "1 0 I 100000 Names100000"},
    {"Text", "<Item id='I'><Tag>", {kLarge}, "</Tag></Item>", "1 0 I 1 Tag=200 MB"},
    {"Attribute", "<Item id='", {kLarge}, "'/>", "1 0 200 MB"},
};
struct InstanceLimits : testing::TestWithParam<Case> {};
INSTANTIATE_TEST_SUITE_P(Cases, InstanceLimits, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.what); });

TEST_P(InstanceLimits, AreExactAndWhatHasNoneIsTaken) {
    const TemporaryFolder folder;
    std::ofstream out(folder / "document.xml");
    out << "<KaInstanceXML xmlns='" << Narrow(KAXML_NAMESPACE_URI) << "'>" << GetParam().opening;
    for (const Repeated& repeated : GetParam().content)
        repeated.Write(out);
    out << GetParam().closing << "</KaInstanceXML>" << std::flush;
    EXPECT_EQ(OutcomeOf(WideFromUtf8((folder / "document.xml").string())), GetParam().outcome);
    EXPECT_EQ(Counted<CKaInstance>::s_alive, 0);
}

TEST(SchemaLimits, NestAThousandElements) {
    const TemporaryFolder folder;
    const LogRecorder log;
    const auto read = [&](std::size_t unknown) {
        const std::string start = "<KaSchema xmlns='" + Narrow(KAXML_NAMESPACE_URI) + "' schemaName='S' ";
        const std::string content = Repeat(unknown, "<a>") + Repeat(unknown, "</a>");
        const std::wstring path = folder.Write("schema.xml", start + "nameSpacePrefix='s'><KaClass typeName='C'>" +
                                                                 content + "</KaClass></KaSchema>");
        return CKaSchema(L"temporary", L"temporary", nullptr).ReadXML(path.c_str());
    };
    EXPECT_EQ(read(998), 0);
    EXPECT_THROW(read(999), KAXMLRuntimeError);
    EXPECT_TRUE(log.Messages(LOG_ERROR).front().ends_with(L"The document is nested deeper than 1000 levels"));
}

} // namespace
} // namespace KAXML::Test

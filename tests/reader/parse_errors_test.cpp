#include <kaxml/kaxml/reader/parse_error_handler.h>

#include "support/instance_recorder.h"

#include <csignal>
#include <sys/resource.h>

namespace KAXML::Test {
namespace {

constexpr char kVariable[] = "DO_NOT_DELETE_KAINSTANCEXML_TEMP_FILE";

// Dumps go to a folder of the test.
struct ParseErrors : testing::Test {
    ParseErrors() {
        unsetenv(kVariable);
        setenv("TMPDIR", folder.Path().c_str(), 1);
        recorder.answer = [this](const std::string& line) { return report = line, 0; };
    }
    ~ParseErrors() override {
        unsetenv(kVariable);
        unsetenv("TMPDIR");
    }
    std::string ReportOf(int isUrl, const std::wstring& source) {
        const NothingPrinted nothing;
        report.clear();
        EXPECT_THROW(recorder.Parse(isUrl, source), KAXMLRuntimeError);
        return report;
    }

    const TemporaryFolder folder;
    InstanceRecorder recorder;
    std::string report;
};

const std::string kBad = "<a>\n \xC3\xA9<b xmlns:p='urn:%s%n' xmlns:q='urn:%s%n' p:x='' q:x=''></a>";
const std::string kFailed = "error SAX Parser failed at line 2, column ";
const std::string kReport = kFailed + "57 with error: Namespaced Attribute x in 'urn:%s%n' redefined";

TEST_F(ParseErrors, AreReportedWithTheWayToTheText) {
    const std::wstring path = folder.Write("bad.xml", kBad);
    const std::wstring url = L"file://" + path;
    AtEverySliceSize([&] {
        EXPECT_EQ(ReportOf(0, WideFromUtf8(kBad)),
                  kReport + ". Set environment variable DO_NOT_DELETE_KAINSTANCEXML_TEMP_FILE to retain a dump of the "
                            "offending xml message");
        setenv(kVariable, "1", 1);
        EXPECT_EQ(ReportOf(1, url), kReport +
                                        ". If DO_NOT_DELETE_KAINSTANCEXML_TEMP_FILE environment variable is "
                                        "set, you can find the offending xml message at: " +
                                        Narrow(url));
        unsetenv(kVariable);
    });
    EXPECT_EQ(folder.FileCount(), 1u) << "no dump of what lies in a file or is not asked for";
}

TEST_F(ParseErrors, LeaveADumpOfTheTextWhenAskedTo) {
    const std::string longName(5000, 'n');
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {"", kBad, kReport},
        {"0", "<a>\r\n<" + longName + ">",
         kFailed + "5003 with error: Premature end of data in tag " + longName + " line 2"},
    };
    AtEverySliceSize([&] {
        for (const auto& [variable, document, itsReport] : cases) {
            setenv(kVariable, variable, 1);
            const std::string got = ReportOf(0, WideFromUtf8(document));
            const std::string where = itsReport + ". You can find the offending xml message in: ";
            ASSERT_EQ(got.substr(0, where.size()), where);
            const std::filesystem::path dump = got.substr(where.size());
            EXPECT_EQ(dump.parent_path(), folder.Path());
            EXPECT_TRUE(dump.filename().string().ends_with(".kainstance.xml"));
            EXPECT_EQ(BytesOf(dump), "<!-- " + itsReport.substr(std::string("error ").size()) +
                                         ".  IGNORE THIS LINE WHEN COUNTING LINE NUMBERS -->\n" + document);
            EXPECT_EQ(std::filesystem::status(dump).permissions(), std::filesystem::perms(0600));
            std::filesystem::remove(dump);
        }
    });
}

TEST_F(ParseErrors, GiveWayToAFailingDump) {
    const auto expect = [&](const std::string& failure, const std::filesystem::path& place) {
        const std::string start = "KAXMLRuntimeError: " + failure + ". filename='" + place.string() + "/";
        const std::string outcome = recorder.Run(0, L"<a>");
        EXPECT_EQ(outcome.substr(0, start.size()), start) << "and the error callback is not called";
        EXPECT_TRUE(outcome.ends_with(".kainstance.xml'\n")) << outcome;
    };
    setenv(kVariable, "", 1);
    // A limit on the size of files makes the writing fail, not the making.
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    const rlimit none{0, limit.rlim_max};
    const auto before = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &none);
    expect("Failed while writing KaInstanceXML to temp file", folder.Path());
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, before);
    setenv("TMPDIR", (folder / "none").c_str(), 1);
    expect("Cannot create temp file for KaInstanceXML", folder / "none");
    EXPECT_EQ(folder.FileCount(), 0u) << "no half-written file stays";
}

} // namespace
} // namespace KAXML::Test

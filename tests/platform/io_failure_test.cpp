#include <kaxml/platform/file.h>

#include "support/instance_recorder.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <future>
#include <regex>
#include <sys/stat.h>

namespace KAXML::Test {
namespace {

namespace fs = std::filesystem;

// What both readers of files tell about one. A file that cannot be read leaves a schema as it was.
std::string OutcomeOfInstances(const std::wstring& path) { return InstanceRecorder().Run(1, path); }
std::string OutcomeOfSchema(const std::wstring& path) {
    CKaSchema schema(L"temporary", L"temporary", nullptr);
    const LogRecorder log;
    testing::internal::CaptureStdout(); // failures are printed as well
    std::string outcome = "status 0";
    try {
        EXPECT_EQ(schema.ReadXML(path.c_str()), 0);
    } catch (const KAXMLRuntimeError&) {
        outcome = Narrow(log.Messages(LOG_ERROR).front());
    }
    testing::internal::GetCapturedStdout();
    return outcome + " " + Narrow(schema.GetSchemaName()) + " " + std::to_string(schema.GetKaClassCount());
}

struct Reading : testing::TestWithParam<bool> {
    ~Reading() override { CurrentFileCalls() = calls; }

    std::string Outcome(const fs::path& file) const {
        const std::wstring name = WideFromUtf8(file.string());
        return isSchema ? OutcomeOfSchema(name) : OutcomeOfInstances(name);
    }
    std::string OutcomeOf(const std::string& bytes) const { return folder.Write("document.xml", bytes), Outcome(path); }

    // Reads `left` bytes in pieces, each after an interruption; behind them something else happens.
    void ReadBy(std::size_t most, std::size_t left, std::function<int()> then) const {
        static std::function<std::ptrdiff_t(int descriptor, void* bytes, std::size_t count)> s_read;
        s_read = [=, this, isInterrupted = false](int descriptor, void* bytes, std::size_t count) mutable {
            isInterrupted = !isInterrupted;
            errno = EINTR;
            if (isInterrupted || left == 0)
                return std::ptrdiff_t{isInterrupted ? -1 : then()};
            const std::ptrdiff_t got = calls.read(descriptor, bytes, std::min({count, most, left}));
            left -= static_cast<std::size_t>(got);
            return got;
        };
        CurrentFileCalls().read = [](int descriptor, void* bytes, std::size_t count) {
            return s_read(descriptor, bytes, count);
        };
    }

    const FileCalls calls = CurrentFileCalls();
    const bool isSchema = GetParam();
    const std::string document =
        isSchema ? BytesOf(KAXML_TEST_DATA_DIR "/instances/Machines.01.00.kaschema.xml")
                 : InRoot("\n<Project><Pump id='1'><Tag>\xC3\xA9t\xC3\xA9</Tag></Pump>\n<Item id='2'/></Project>");
    const TemporaryFolder folder;
    const fs::path path = folder / "document.xml";
    const std::string expected = OutcomeOf(document);
};
INSTANTIATE_TEST_SUITE_P(InstancesAndSchemas, Reading, testing::Bool());

TEST_P(Reading, TakesShortAndInterruptedReads) {
    std::string utf16 = "\xFF\xFE";
    for (const wchar_t c : WideFromUtf8(std::regex_replace(document, std::regex("UTF-8"), "UTF-16")))
        utf16 += {static_cast<char>(c), '\0'};
    for (const std::size_t most : {1U, 2U, 3U, 5U, 1000U})
        for (const std::string& bytes : {document, utf16}) {
            ReadBy(most, bytes.size(), [] { return 0; });
            EXPECT_EQ(OutcomeOf(bytes), expected) << most;
        }
    CurrentFileCalls() = calls;
    mkfifo((folder / "pipe").c_str(), 0600);
    const auto writer = std::async(std::launch::async, [&] {
        std::ofstream out(folder / "pipe");
        for (const char c : document)
            out << c << std::flush;
    });
    EXPECT_EQ(Outcome(folder / "pipe"), expected);
}

TEST_P(Reading, ReportsWhereAFileBreaksAndKeepsNothingOpen) {
    const auto openFiles = [] { return std::distance(fs::directory_iterator("/proc/self/fd"), {}); };
    const auto before = openFiles();
    const std::string reason = "Cannot read '" + path.string() + "': Input/output error";
    const std::string ending = isSchema ? " parsing KaSchema file " + path.string() + ". " + reason + " temporary 0"
                                        : ": " + reason + ". " + path.string() + ". \n";
    for (std::size_t at = 0; at <= document.size(); at += 1 + at / 50) {
        ReadBy(document.size(), at, [] { return errno = EIO, -1; });
        const std::string outcome = OutcomeOf(document);
        EXPECT_TRUE(outcome.ends_with(ending)) << at << outcome;
        const std::string delivered = outcome.substr(0, std::min(outcome.find("error "), outcome.find("line ")));
        EXPECT_EQ(delivered, expected.substr(0, delivered.size()));
    }
    CurrentFileCalls() = calls;
    EXPECT_EQ(OutcomeOf(document), expected);
    EXPECT_NE(Outcome(folder / "none").find("none': No such file or directory"), ending.npos);
    EXPECT_NE(Outcome(folder.Path()).find("Cannot open '" + folder.Path().string() + "': Is a directory"), ending.npos);
    EXPECT_EQ(openFiles(), before);
}

TEST_P(Reading, TakesAFileThatShrinksForOneThatEndsThere) {
    for (std::size_t at = 0; at <= document.size(); at += 1 + at / 50) {
        CurrentFileCalls() = calls;
        const std::string cutOff = OutcomeOf(document.substr(0, at));
        EXPECT_EQ(cutOff == expected, at == document.size());
        ReadBy(document.size(), at, [&] { return fs::resize_file(path, at / 2), 0; });
        EXPECT_EQ(OutcomeOf(document), cutOff);
    }
}

} // namespace
} // namespace KAXML::Test

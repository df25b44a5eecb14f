#include <kaxml/kaxml.h>

#include "platform/test_support.h"
#include "support/expectations.h"
#include "support/model_compare.h"

#include <algorithm>
#include <sstream>

/// The documents in data/schemas. Beside each lies what must come of it (".expected"): the status,
/// or the class and texts of the exception and how many classes it left, then the log; a line may end in "*" for any
/// further text. Beside a good one lies the file that writing it gives (".golden").
namespace KAXML::Test {
namespace {

namespace fs = std::filesystem;

const fs::path kFolder = fs::path(KAXML_TEST_DATA_DIR) / "schemas";
const std::wstring kSearchPath = WideFromUtf8((kFolder / "referenced").string());

void Replace(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
}

// Names for what differs from place to place.
std::string Placeless(std::string text, const fs::path& document) {
    Replace(text, document.string(), "@FILE@");
    Replace(text, kFolder.string(), "@FOLDER@");
    Replace(text, "'" + fs::current_path().string() + ";", "'@CURRENT@;");
    if (const std::size_t begin = text.find("Error at api/core/"); begin != std::string::npos)
        text.replace(begin, text.find("): ", begin) - begin, "Error at @SOURCE@ (@LINE@");
    return text;
}

std::string InWords(const KAXMLException& error) {
    const std::string words = testing::internal::GetTypeName(typeid(error)).substr(sizeof("KAXML::") - 1) + "\n" +
                              Narrow(error.Message()) + "\n";
    return *error.Location() == L'\0' ? words : words + "at " + Narrow(error.Location()) + "\n";
}

std::string InWords(const LogRecorder& log) {
    std::string words;
    for (const LogRecorder::Entry& entry : log.Entries()) {
        if (entry.severity < LOG_WARNING || entry.category == L"Exception")
            continue;
        EXPECT_LE(entry.message.size(), 1024U);
        std::string message = Narrow(entry.message);
        // The parser's reasons may take several lines.
        Replace(message, "\n", " ");
        words += "log " + std::to_string(entry.severity) + " " + message + "\n";
    }
    return words;
}

std::string Written(const CKaSchema& schema) {
    const TemporaryFolder folder;
    EXPECT_EQ(schema.WriteXML(WideFromUtf8((folder / "x").string()).c_str()), 0);
    return BytesOf(folder / "x");
}

// Reads the document and, when that goes well, writes it; says in the words of the expected files
// what came of it.
std::string Outcome(const fs::path& document, std::string& written) {
    std::string words;
    const LogRecorder log;
    CKaSchema schema(L"temporary", L"temporary", nullptr);
    schema.SetSearchPath(kSearchPath.c_str());
    try {
        const int status = schema.ReadXML(WideFromUtf8(document.string()).c_str());
        words = "status " + std::to_string(status) + "\n";
        if (status == 0)
            written = Written(schema);
    } catch (const KAXMLException& error) {
        words = InWords(error);
        if (const auto left = schema.GetKaClassCount() + schema.GetKaRelationshipClassCount(); left != 0)
            words += "left " + std::to_string(left) + "\n";
    }
    return Placeless(words + InWords(log), document);
}

void ExpectLines(const std::string& expected, const std::string& found) {
    std::istringstream foundLines(found);
    std::istringstream expectedLines(expected);
    for (std::string wanted, line; std::getline(expectedLines, wanted);) {
        std::getline(foundLines, line);
        if (wanted.ends_with('*'))
            line = line.substr(0, wanted.size() - 1) + "*";
        EXPECT_EQ(wanted, line) << found;
    }
    EXPECT_EQ(std::count(expected.begin(), expected.end(), '\n'), std::count(found.begin(), found.end(), '\n'))
        << found;
}

// What was written reads back as the same model when the writer had nothing to warn of; written
// again it gives the same bytes in any case.
void ExpectStable(const fs::path& document) {
    const TemporaryFolder folder;
    const auto first = ReadModel(WideFromUtf8(document.string()), kSearchPath);
    const LogRecorder log;
    const std::string written = Written(*first);
    const bool isWarned = !log.Entries().empty();
    const auto second = ReadModel(folder.Write("x", written), kSearchPath);
    EXPECT_EQ(isWarned ? "" : FirstDifference(*first, *second), "");
    EXPECT_EQ(written, Written(*second));
}

void ExpectOutcome(const fs::path& document) {
    const std::string stem = fs::path(document).replace_extension().replace_extension().string();
    const bool isBad = stem.find("-bad-") != std::string::npos;
    const std::string expected = BytesOf(stem + ".expected");
    AtEverySliceSize([&] {
        std::string written;
        testing::internal::CaptureStdout();
        const std::string outcome = Outcome(document, written);
        const std::string printed = Placeless(testing::internal::GetCapturedStdout(), document);
        ExpectLines(expected, outcome);
        EXPECT_EQ(outcome.starts_with("status 0\n"), !isBad);
        // What fails by way of a checked call is printed too.
        EXPECT_EQ(printed, outcome.find("CheckXmlLoad") == std::string::npos ? "" : outcome.substr(18, printed.size()));
        EXPECT_EQ(isBad ? "" : BytesOf(stem + ".golden"), written);
    });
    if (!isBad && expected.find("cannot be read") == std::string::npos)
        ExpectStable(document);
}

TEST(SchemaCorpus, ComesOutAsExpected) {
    unsetenv("KASCHEMA_PATH");
    std::size_t documents = 0;
    for (const auto& entry : fs::directory_iterator(kFolder))
        if (entry.path().string().ends_with(".kaschema.xml")) {
            SCOPED_TRACE(entry.path());
            ExpectOutcome(entry.path());
            ++documents;
        }
    EXPECT_GE(documents, 100U);
}

} // namespace
} // namespace KAXML::Test

#include <kaxml/kaxml.h>

#include "platform/test_support.h"
#include "support/expectations.h"
#include "support/model_compare.h"

#include <algorithm>
#include <cxxabi.h>
#include <set>
#include <sstream>

/// The documents in data/schemas. Beside each lies what must come of it (".expected"): the status,
/// or the class and texts of the exception, then the log; a line may end in "*" for any further
/// text. Beside a good one lies the file that writing it gives (".golden").
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
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(typeid(error).name(), nullptr, nullptr, nullptr), &std::free);
    std::string words = std::string(name.get()).substr(sizeof("KAXML::") - 1) + "\n" + Narrow(error.Message()) + "\n";
    return *error.Location() == L'\0' ? words : words + "at " + Narrow(error.Location()) + "\n";
}

std::string InWords(const LogRecorder& log) {
    std::string words;
    for (const LogRecorder::Entry& entry : log.Entries()) {
        if (entry.severity < LOG_WARNING || entry.category == L"Exception")
            continue;
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
void ExpectStable(const fs::path& document, const std::wstring& searchPath) {
    SCOPED_TRACE(document);
    const TemporaryFolder folder;
    const auto first = ReadModel(WideFromUtf8(document.string()), searchPath);
    const LogRecorder log;
    const std::string written = Written(*first);
    const bool isWarned = !log.Entries().empty();
    const auto second = ReadModel(folder.Write("x", written), searchPath);
    EXPECT_EQ(isWarned ? "" : FirstDifference(*first, *second), "");
    EXPECT_EQ(written, Written(*second));
}

std::set<fs::path> Documents(const fs::path& folder) {
    std::set<fs::path> documents;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().string().ends_with(".kaschema.xml"))
            documents.insert(entry.path());
    return documents;
}

class SchemaCorpus : public testing::TestWithParam<fs::path> {};

TEST_P(SchemaCorpus, ComesOutAsExpected) {
    unsetenv("KASCHEMA_PATH");
    const std::string stem = fs::path(GetParam()).replace_extension().replace_extension().string();
    const bool isBad = stem.find("-bad-") != std::string::npos;
    AtEverySliceSize([&] {
        std::string written;
        testing::internal::CaptureStdout();
        const std::string outcome = Outcome(GetParam(), written);
        const std::string printed = Placeless(testing::internal::GetCapturedStdout(), GetParam());
        ExpectLines(BytesOf(stem + ".expected"), outcome);
        EXPECT_EQ(outcome.starts_with("status 0\n"), !isBad);
        // What fails by way of a checked call is printed too.
        EXPECT_EQ(printed, outcome.find("CheckXmlLoad") == std::string::npos ? "" : outcome.substr(18, printed.size()));
        if (!isBad) {
            EXPECT_EQ(BytesOf(stem + ".golden"), written);
        }
    });
    if (!isBad)
        ExpectStable(GetParam(), kSearchPath);
}

std::string TestName(const testing::TestParamInfo<fs::path>& info) {
    std::string name = info.param.stem().stem().string();
    std::replace(name.begin(), name.end(), '-', '_');
    return "_" + name;
}

INSTANTIATE_TEST_SUITE_P(Data, SchemaCorpus, testing::ValuesIn(Documents(kFolder)), TestName);

// The schemas of the example are written by hand: their bytes change once, then never again.
TEST(ExampleSchemas, AreStable) {
    const fs::path folder = fs::path(KAXML_TEST_DATA_DIR) / "../../examples/plant/data";
    std::set<fs::path> documents = Documents(folder);
    documents.merge(Documents(folder / "schemas"));
    EXPECT_EQ(documents.size(), 3U);
    for (const fs::path& document : documents)
        ExpectStable(document, WideFromUtf8((folder / "schemas").string()));
}

} // namespace
} // namespace KAXML::Test

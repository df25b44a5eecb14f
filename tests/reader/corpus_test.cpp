#include "support/instance_recorder.h"

#include <set>

namespace KAXML::Test {
namespace {

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

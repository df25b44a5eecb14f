#include "support/instance_recorder.h"

#include <kaxml/kaxml/core/check_hresult.h>

#include <cfenv>
#include <clocale>
#include <csignal>
#include <sys/stat.h>
#include <unistd.h>

namespace KAXML::Test {
namespace {

// What no call of the library may change.
std::string State() {
    std::string state = setlocale(LC_ALL, nullptr) + std::locale().name() + std::filesystem::current_path().string();
    for (const int number : {errno, static_cast<int>(umask(027)), std::fegetround(), std::fwide(stdout, 0)})
        state += " " + std::to_string(number);
    struct sigaction action {};
    for (int number = 1; number < 32 && sigaction(number, nullptr, &action) == 0; ++number)
        state += action.sa_handler == SIG_DFL ? "-" : "+";
    for (char** variable = environ; *variable != nullptr; ++variable)
        state += *variable;
    return state;
}

TEST(ProcessStateDeathTest, IsTheSameAfterEveryCall) {
    const TemporaryFolder folder;
    const LogRecorder log;
    CKaSchema schema(L"temporary", L"temporary", nullptr);
    CKaProperty property(nullptr);
    double number = 0;
    const std::pair<const char*, std::function<void()>> calls[] = {
        {"read", [&] { schema.ReadXML(L"" KAXML_TEST_DATA_DIR "/schemas/003-latin-1.kaschema.xml"); }},
        {"read references", [&] { schema.ReadXML(L"" KAXML_TEST_DATA_DIR "/schemas/020-references.kaschema.xml"); }},
        {"read nothing", [&] { EXPECT_ANY_THROW(schema.ReadXML(L"missing")); }},
        {"save", [&] { schema.WriteXML(L"saved"); }},
        {"save nowhere", [&] { EXPECT_ANY_THROW(schema.WriteXML(L"missing/saved")); }},
        {"parse", [&] { InstanceRecorder().Parse(1, L"" KAXML_TEST_DATA_DIR "/instances/38-projects.xml"); }},
        {"parse and dump", [] { EXPECT_ANY_THROW(InstanceRecorder().Parse(0, L"<")); }},
        {"write a number", [&] { CKaValue(&property, nullptr).SetValue(1.1); }},
        {"read a number", [&] { EXPECT_ANY_THROW(CKaValue(&property, L"1e999").GetValue(&number)); }},
        {"make a GUID", [] { CreateGuid(); }},
        {"print", [] { EXPECT_ANY_THROW(CheckHResult(E_FAIL, L"\u00E9", "f", 1)); }},
    };
    const auto runAll = [&] {
        EXPECT_NE(std::freopen("/dev/null", "w", stdout), nullptr); // as if nobody had used it
        std::filesystem::current_path(folder.Path());
        umask(027);
        std::fesetround(FE_UPWARD);
        setenv("DO_NOT_DELETE_KAINSTANCEXML_TEMP_FILE", "1", 1);
        setenv("TMPDIR", folder.Path().c_str(), 1);
        setenv("KASCHEMA_PATH", "missing;" KAXML_TEST_DATA_DIR "/schemas/referenced", 1);
        for (const auto& [name, run] : calls) {
            errno = EDOM;
            const std::string before = State();
            run();
            if (State() != before)
                std::fprintf(stderr, "%s; ", name);
        }
        std::_Exit(testing::Test::HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(runAll(), testing::ExitedWithCode(0), "^$") << "these changed something";
}

} // namespace
} // namespace KAXML::Test

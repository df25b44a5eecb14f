#include <kaxml/platform/file.h>

#include <kaxml/kaxml.h>
#include <kaxml/platform/com_error.h>

#include "platform/test_support.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace KAXML::Test {
namespace {

namespace fs = std::filesystem;

std::wstring Wide(const fs::path& path) { return WideFromUtf8(path.string()); }
fs::perms ModeOf(const fs::path& path) { return fs::status(path).permissions(); }

// Saves, and returns what the failure tells behind the path.
std::wstring FailureOfReplacing(const fs::path& path, std::string_view bytes = "new") {
    try {
        ReplaceFile(Wide(path), bytes);
    } catch (const _com_error& error) {
        const std::wstring start = L"Cannot save '" + Wide(path) + L"': ";
        EXPECT_EQ(std::wstring(error.Source()), Wide(path));
        EXPECT_EQ(std::wstring(error.Description()).substr(0, start.size()), start);
        return error.Description() + start.size();
    }
    return L"";
}

// The calls fail in turn: the n-th of all that a save makes does. Without an error number the process
// is killed before it.
int g_callsLeft;
int g_error;
std::size_t g_piece = 2;
bool Fails() {
    errno = g_error;
    if (--g_callsLeft == 0 && g_error == 0)
        kill(getpid(), SIGKILL);
    return g_callsLeft == 0;
}

const FileCalls kSystemCalls = CurrentFileCalls();
const FileCalls kFailingCalls{
    [](const char* path, int flags, unsigned mode) { return Fails() ? -1 : kSystemCalls.open(path, flags, mode); },
    [](int descriptor, const void* bytes, std::size_t count) {
        // Everything in small pieces, the failing call after some of them.
        return Fails() ? std::ptrdiff_t{-1} : kSystemCalls.write(descriptor, bytes, std::min(count, g_piece));
    },
    [](int descriptor, unsigned mode) { return Fails() ? -1 : kSystemCalls.fchmod(descriptor, mode); },
    [](int descriptor) { return Fails() ? -1 : kSystemCalls.fsync(descriptor); },
    [](int descriptor) {
        const bool fails = Fails();
        return kSystemCalls.close(descriptor) != 0 || fails ? (errno = g_error, -1) : 0;
    },
    [](const char* from, const char* to) { return Fails() ? -1 : kSystemCalls.rename(from, to); },
    kSystemCalls.read,
};

template <typename Run> auto WithFailingCall(int number, int error, Run run) {
    g_callsLeft = number;
    g_error = error;
    CurrentFileCalls() = kFailingCalls;
    const auto result = run();
    CurrentFileCalls() = kSystemCalls;
    return result;
}

TEST(ReplaceFile, MakesAndReplacesFiles) {
    const TemporaryFolder folder;
    const fs::path path = folder / std::string(255, 'n'); // the longest name that the system allows
    const mode_t mask = umask(027);
    EXPECT_EQ(FailureOfReplacing(path, "first"), L"");
    umask(mask);
    EXPECT_EQ(BytesOf(path), "first");
    EXPECT_EQ(ModeOf(path), fs::perms(0640));
    for (const fs::perms mode : {fs::perms(0600), fs::perms(0664), fs::perms(0444)}) {
        fs::permissions(path, mode);
        EXPECT_EQ(FailureOfReplacing(path, ""), L"");
        EXPECT_EQ(BytesOf(path), "");
        EXPECT_EQ(ModeOf(path), mode);
    }
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST(ReplaceFile, FollowsSymbolicLinksAndRefusesWhatIsNoFile) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "sub");
    fs::create_symlink("sub/link", folder / "first");
    fs::create_symlink("target", folder / "sub/link");
    for (const char* const content : {"through a dangling link", "again"}) {
        EXPECT_EQ(FailureOfReplacing(folder / "first", content), L"");
        EXPECT_EQ(BytesOf(folder / "sub/target"), content);
        EXPECT_TRUE(fs::is_symlink(folder / "first") && fs::is_symlink(folder / "sub/link"));
    }
    mkfifo((folder / "fifo").c_str(), 0600);
    fs::create_symlink("/dev/full", folder / "full");
    fs::create_symlink("loop", folder / "loop");
    for (const fs::path& path : {folder / "fifo", folder / "full", folder.Path()})
        EXPECT_EQ(FailureOfReplacing(path), L"replacing it: it is not a regular file");
    EXPECT_EQ(FailureOfReplacing(folder / "loop"), L"following the symbolic link: Too many levels of symbolic links");
    EXPECT_EQ(FailureOfReplacing(folder / "none/file"),
              L"creating a new file in its folder: No such file or directory");
    EXPECT_NE(FailureOfReplacing(""), L"");
    EXPECT_EQ(folder.FileCount(), 5u);
}

TEST(ReplaceFile, LeavesEverythingAsItWasWhenAnyCallFails) {
    const TemporaryFolder folder;
    const fs::path path = folder / "file";
    const wchar_t* const steps[] = {L"creating a new file in its folder",
                                    L"setting its permissions",
                                    L"writing",
                                    L"writing",
                                    L"flushing to disk",
                                    L"closing",
                                    L"putting the new file in its place"};
    int number = 0;
    for (const std::wstring step : steps) {
        folder.Write("file", "old bytes");
        EXPECT_EQ(WithFailingCall(++number, ENOSPC, [&] { return FailureOfReplacing(path); }),
                  step + L": No space left on device");
        EXPECT_EQ(BytesOf(path), "old bytes");
        EXPECT_EQ(folder.FileCount(), 1u);
    }
    // Once the new file is in place nothing can fail any more.
    for (; g_callsLeft <= 0; ++number) {
        folder.Write("file", "old bytes");
        EXPECT_EQ(WithFailingCall(number + 1, EIO, [&] { return FailureOfReplacing(path); }), L"");
        EXPECT_EQ(BytesOf(path), "new");
    }
    for (const int interrupted : {1, 3, 5}) { // open, write, fsync
        folder.Write("file", "old");
        errno = EDOM;
        EXPECT_EQ(WithFailingCall(interrupted, EINTR, [&] { return FailureOfReplacing(path); }), L"");
        EXPECT_EQ(errno, EDOM);
        EXPECT_EQ(BytesOf(path), "new");
    }
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST(SchemaFile, IsTheOldOrTheNewOneWhenASaveIsKilled) {
    const TemporaryFolder folder;
    CKaSchema schema(L"Plant", L"pl", nullptr);
    for (int number = 0; number < 100; ++number)
        schema.CreateKaClass((L"Pump" + std::to_wstring(number)).c_str(), L"text \u00E9", KA_DOMAIN_CLASS)
            ->AddKaProperty(L"Flow", L"double", std::wstring(3000, L'x'));
    const auto save = [&] { return schema.WriteXML(Wide(folder / "file").c_str()); };
    save();
    const std::string newBytes = BytesOf(folder / "file");
    g_piece = newBytes.size() / 192 + 1;
    std::size_t killedBefore = 0; // the new file was in place
    std::size_t kills = 0;
    for (int status = SIGKILL; status == SIGKILL; ++kills) {
        folder.Write("file", "old bytes");
        const pid_t child = fork();
        if (child == 0)
            _exit(WithFailingCall(static_cast<int>(kills) + 1, 0, save));
        ASSERT_EQ(waitpid(child, &status, 0), child);
        const std::string bytes = BytesOf(folder / "file");
        ASSERT_TRUE(bytes == newBytes || (bytes == "old bytes" && killedBefore == kills)) << kills;
        killedBefore += bytes == newBytes ? 0 : 1;
        ASSERT_TRUE(status == SIGKILL || status == 0);
    }
    EXPECT_GT(kills, 200u);
    EXPECT_GT(kills - killedBefore, 1u);
    // What the killed leave behind, all but the one that had no new file yet, is in nobody's way.
    EXPECT_EQ(folder.FileCount(), killedBefore);
    for (const auto& entry : fs::directory_iterator(folder.Path()))
        EXPECT_TRUE(entry.path().filename() == "file" || entry.path().filename().string().starts_with(".kaxml-"));
    g_piece = 2;
}

TEST(WriteNewPrivateFile, NeverFollowsOrOverwritesAndSaysWhatFailed) {
    const TemporaryFolder folder;
    const std::wstring text = std::wstring(40000, L'\u00E9') + L"\U0001F642";
    EXPECT_EQ(WriteNewPrivateFile(Wide(folder / "new"), "header\n", text), NewFileResult::written);
    EXPECT_EQ(ModeOf(folder / "new"), fs::perms(0600));
    fs::create_symlink("target", folder / "link");
    for (const char* const name : {"new", "link", "none/new"})
        EXPECT_EQ(WriteNewPrivateFile(Wide(folder / name), "h", L"t"), NewFileResult::cannotCreate);
    EXPECT_EQ(BytesOf(folder / "new"), "header\n" + Utf8FromWide(text));
    const auto write = [&] { return WriteNewPrivateFile(Wide(folder / "broken"), "h", L"t"); };
    for (const int number : {2, 3, 4}) // header, text, close
        EXPECT_EQ(WithFailingCall(number, ENOSPC, write), NewFileResult::cannotWrite);
    EXPECT_EQ(folder.FileCount(), 2u);
}

} // namespace
} // namespace KAXML::Test

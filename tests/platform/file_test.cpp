#include <kaxml/platform/file.h>

#include <kaxml/platform/com_error.h>

#include "platform/test_support.h"

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>

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

// The calls fail in turn: the n-th of all that a save makes does.
int g_callsLeft;
int g_error;
bool Fails() {
    errno = g_error;
    return --g_callsLeft == 0;
}

const FileCalls kSystemCalls = CurrentFileCalls();
const FileCalls kFailingCalls{
    [](const char* path, int flags, unsigned mode) { return Fails() ? -1 : kSystemCalls.open(path, flags, mode); },
    [](int descriptor, const void* bytes, std::size_t count) {
        // Everything in small pieces, the failing call after some of them.
        return Fails() ? std::ptrdiff_t{-1} : kSystemCalls.write(descriptor, bytes, std::min<std::size_t>(count, 2));
    },
    [](int descriptor, unsigned mode) { return Fails() ? -1 : kSystemCalls.fchmod(descriptor, mode); },
    [](int descriptor) { return Fails() ? -1 : kSystemCalls.fsync(descriptor); },
    [](int descriptor) {
        const bool fails = Fails();
        return kSystemCalls.close(descriptor) != 0 || fails ? (errno = g_error, -1) : 0;
    },
    [](const char* from, const char* to) { return Fails() ? -1 : kSystemCalls.rename(from, to); },
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

#include <kaxml/platform/file.h>

#include <kaxml/platform/com_error.h>

#include "platform/test_support.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace KAXML::Test {
namespace {

namespace fs = std::filesystem;

std::wstring Wide(const fs::path& path) { return WideFromUtf8(path.string()); }

unsigned ModeOf(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

std::wstring FailureOfReplacing(const fs::path& path) {
    try {
        ReplaceFile(Wide(path), "new");
    } catch (const _com_error& error) {
        EXPECT_EQ(std::wstring(error.Source()), Wide(path));
        return error.Description();
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

class FailingCall {
  public:
    FailingCall(int number, int error) {
        g_callsLeft = number;
        g_error = error;
        CurrentFileCalls() = kFailingCalls;
    }
    FailingCall(const FailingCall&) = delete;
    FailingCall& operator=(const FailingCall&) = delete;
    ~FailingCall() { CurrentFileCalls() = kSystemCalls; }
};

TEST(ReplaceFile, MakesAndReplacesFiles) {
    const TemporaryFolder folder;
    const mode_t mask = umask(027);
    ReplaceFile(Wide(folder / "new"), "first");
    umask(mask);
    EXPECT_EQ(BytesOf(folder / "new"), "first");
    EXPECT_EQ(ModeOf(folder / "new"), 0640u);
    for (const unsigned mode : {0600u, 0664u, 0444u}) {
        chmod((folder / "new").c_str(), mode);
        ReplaceFile(Wide(folder / "new"), "");
        EXPECT_EQ(BytesOf(folder / "new"), "");
        EXPECT_EQ(ModeOf(folder / "new"), mode);
    }
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST(ReplaceFile, TakesANameAsLongAsTheSystemAllows) {
    const TemporaryFolder folder;
    const std::string name(255, 'n');
    ReplaceFile(Wide(folder / name), "x");
    EXPECT_EQ(BytesOf(folder / name), "x");
}

TEST(ReplaceFile, FollowsSymbolicLinks) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "sub");
    fs::create_symlink("sub/link", folder / "first");
    fs::create_symlink("target", folder / "sub/link");
    for (const char* const content : {"through a dangling link", "again"}) {
        ReplaceFile(Wide(folder / "first"), content);
        EXPECT_EQ(BytesOf(folder / "sub/target"), content);
        EXPECT_TRUE(fs::is_symlink(folder / "first"));
        EXPECT_TRUE(fs::is_symlink(folder / "sub/link"));
    }
    fs::create_symlink("loop", folder / "loop");
    EXPECT_EQ(FailureOfReplacing(folder / "loop"),
              L"Cannot save '" + Wide(folder / "loop") +
                  L"': following the symbolic link: Too many levels of symbolic links");
}

TEST(ReplaceFile, RefusesWhatIsNoFile) {
    const TemporaryFolder folder;
    mkfifo((folder / "fifo").c_str(), 0600);
    fs::create_symlink("/dev/full", folder / "full");
    for (const fs::path& path : {folder / "fifo", folder / "full", folder.Path()})
        EXPECT_EQ(FailureOfReplacing(path),
                  L"Cannot save '" + Wide(path) + L"': replacing it: it is not a regular file");
    EXPECT_EQ(FailureOfReplacing(folder / "none/file"),
              L"Cannot save '" + Wide(folder / "none/file") +
                  L"': creating a new file in its folder: No such file or directory");
    EXPECT_NE(FailureOfReplacing(""), L"");
    EXPECT_EQ(folder.FileCount(), 2u);
}

TEST(ReplaceFile, LeavesEverythingAsItWasWhenAnyCallFails) {
    const TemporaryFolder folder;
    const fs::path path = folder.Path() / "file";
    const wchar_t* const steps[] = {L"creating a new file in its folder",
                                    L"setting its permissions",
                                    L"writing",
                                    L"writing",
                                    L"flushing to disk",
                                    L"closing",
                                    L"putting the new file in its place"};
    int number = 0;
    for (const wchar_t* const step : steps) {
        folder.Write("file", "old bytes");
        std::wstring failure;
        {
            const FailingCall failing(++number, ENOSPC);
            failure = FailureOfReplacing(path);
        }
        EXPECT_EQ(failure, L"Cannot save '" + Wide(path) + L"': " + step + L": No space left on device");
        EXPECT_EQ(BytesOf(path), "old bytes");
        EXPECT_EQ(folder.FileCount(), 1u);
    }
    // Once the new file is in place nothing can fail any more.
    for (; g_callsLeft <= 0; ++number) {
        folder.Write("file", "old bytes");
        const FailingCall failing(number + 1, EIO);
        ReplaceFile(Wide(path), "new");
        EXPECT_EQ(BytesOf(path), "new");
    }
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST(ReplaceFile, RepeatsInterruptedCallsAndKeepsErrno) {
    const TemporaryFolder folder;
    const fs::path path = folder.Path() / "file";
    folder.Write("file", "old");
    for (const int number : {1, 3, 5}) { // open, write, fsync
        const FailingCall failing(number, EINTR);
        errno = EDOM;
        ReplaceFile(Wide(path), "new");
        EXPECT_EQ(errno, EDOM);
        EXPECT_EQ(BytesOf(path), "new");
    }
    EXPECT_EQ(folder.FileCount(), 1u);
}

TEST(WriteNewPrivateFile, NeverFollowsOrOverwritesAndSaysWhatFailed) {
    const TemporaryFolder folder;
    std::wstring text(40000, L'\u00E9');
    text += L"\U0001F642";
    EXPECT_EQ(WriteNewPrivateFile(Wide(folder / "new"), "header\n", text), NewFileResult::written);
    EXPECT_EQ(BytesOf(folder / "new"), "header\n" + Utf8FromWide(text));
    EXPECT_EQ(ModeOf(folder / "new"), 0600u);
    fs::create_symlink("target", folder / "link");
    for (const char* const name : {"new", "link", "none/new"})
        EXPECT_EQ(WriteNewPrivateFile(Wide(folder / name), "h", L"t"), NewFileResult::cannotCreate);
    EXPECT_EQ(BytesOf(folder / "new"), "header\n" + Utf8FromWide(text));
    EXPECT_FALSE(fs::exists(folder / "target"));
    for (const int number : {2, 3, 4}) { // header, text, close
        const FailingCall failing(number, ENOSPC);
        EXPECT_EQ(WriteNewPrivateFile(Wide(folder / "broken"), "h", L"t"), NewFileResult::cannotWrite);
        EXPECT_FALSE(fs::exists(folder / "broken"));
    }
}

TEST(CanonicalPath, SeesThroughLinksAndRelativeParts) {
    const TemporaryFolder folder;
    const std::wstring file = CanonicalPath(folder.Write("file", ""));
    fs::create_directory(folder / "sub");
    fs::create_symlink("../file", folder / "sub/link");
    EXPECT_EQ(CanonicalPath(Wide(folder / "sub/../file")), file);
    EXPECT_EQ(CanonicalPath(Wide(folder / "sub/link")), file);
    EXPECT_EQ(CanonicalPath(L"/missing/../x"), L"/missing/../x");
}

} // namespace
} // namespace KAXML::Test

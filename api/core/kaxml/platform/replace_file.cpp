#include <kaxml/platform/file.h>

#include <kaxml/platform/com_error.h>
#include <kaxml/platform/system_error.h>
#include <kaxml/platform/uuid.h>
#include <kaxml/platform/wide_text.h>

#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace KAXML {

namespace {

constexpr int kMostLinks = 40;
constexpr int kMostNames = 16;

[[noreturn]] void Fail(const std::wstring& path, const std::wstring& step, const std::wstring& reason) {
    throw _com_error(E_FAIL, L"Cannot save '" + path + L"': " + step + L": " + reason, path);
}

[[noreturn]] void FailWithSystemError(const std::wstring& path, const std::wstring& step, int error) {
    Fail(path, step, SystemErrorText(error));
}

// The folder of a path with its closing separator; empty for a bare name.
std::string FolderOf(const std::string& path) {
    const std::size_t separator = path.rfind('/');
    return separator == std::string::npos ? std::string() : path.substr(0, separator + 1);
}

// The text of a symbolic link; nothing when the path is none (or does not exist).
std::optional<std::string> LinkText(const std::string& path) {
    std::string text(256, '\0');
    for (;;) {
        const ssize_t length = readlink(path.c_str(), text.data(), text.size());
        if (length < 0)
            return std::nullopt;
        if (static_cast<std::size_t>(length) < text.size()) {
            text.resize(static_cast<std::size_t>(length));
            return text;
        }
        text.resize(text.size() * 2);
    }
}

// The place a save goes to: behind all links, also behind one that leads to no file yet.
std::string FollowLinks(const std::wstring& path) {
    std::string target = Utf8FromWide(path);
    for (int links = 0; links < kMostLinks; ++links) {
        const std::optional<std::string> text = LinkText(target);
        if (!text)
            return target;
        target = text->front() == '/' ? *text : FolderOf(target) + *text;
    }
    FailWithSystemError(path, L"following the symbolic link", ELOOP);
}

// The file that will be replaced; nothing when there is none.
std::optional<struct stat> OldFile(const std::wstring& path, const std::string& target) {
    struct stat status {};
    if (stat(target.c_str(), &status) == 0) {
        if (!S_ISREG(status.st_mode))
            Fail(path, L"replacing it", L"it is not a regular file");
        return status;
    }
    if (errno != ENOENT)
        FailWithSystemError(path, L"looking at the file", errno);
    return std::nullopt;
}

std::string TemporaryName(const std::wstring& path) {
    GUID guid{};
    std::wstring text;
    if (const int error = UuidCreate(&guid); error != 0)
        FailWithSystemError(path, L"naming a temporary file", error);
    UuidToStringW(&guid, text);
    return ".kaxml-" + Utf8FromWide(text) + ".tmp";
}

// The new file while it is being made: closed and removed unless it takes its place.
class NewFile {
  public:
    NewFile(const std::wstring& path, const std::string& folder, unsigned mode) : m_path(path) {
        for (int attempt = 0; attempt < kMostNames && m_descriptor < 0; ++attempt) {
            m_name = folder + TemporaryName(path);
            m_descriptor =
                CurrentFileCalls().open(m_name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
            if (m_descriptor < 0 && errno != EEXIST && errno != EINTR)
                break;
        }
        Require(m_descriptor >= 0, L"creating a new file in its folder");
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile() {
        if (m_descriptor >= 0)
            CurrentFileCalls().close(m_descriptor);
        if (!m_name.empty())
            unlink(m_name.c_str());
    }

    void TakePermissions(const struct stat& old) {
        TakeOwner(old);
        Require(CurrentFileCalls().fchmod(m_descriptor, old.st_mode & 07777) == 0, L"setting its permissions");
    }

    void Write(std::string_view bytes) {
        while (!bytes.empty()) {
            errno = EIO; // for a write that takes nothing without saying why
            const std::ptrdiff_t count = CurrentFileCalls().write(m_descriptor, bytes.data(), bytes.size());
            Require(count > 0 || (count < 0 && errno == EINTR), L"writing");
            bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
        }
    }

    void Flush() {
        int result;
        do {
            result = CurrentFileCalls().fsync(m_descriptor);
        } while (result != 0 && errno == EINTR);
        Require(result == 0, L"flushing to disk");
    }

    void Close() {
        const int descriptor = m_descriptor;
        m_descriptor = -1;
        Require(CurrentFileCalls().close(descriptor) == 0, L"closing");
    }

    void MoveTo(const std::string& target) {
        Require(CurrentFileCalls().rename(m_name.c_str(), target.c_str()) == 0, L"putting the new file in its place");
        m_name.clear();
    }

  private:
    // The permissions would mean something else for another owner. Only some processes may give a
    // file away; what the others make is theirs.
    void TakeOwner(const struct stat& old) noexcept {
        struct stat own {};
        const bool isOwn = fstat(m_descriptor, &own) == 0 && own.st_uid == old.st_uid && own.st_gid == old.st_gid;
        if (!isOwn && fchown(m_descriptor, old.st_uid, old.st_gid) != 0)
            return;
    }

    void Require(bool done, const wchar_t* step) const {
        if (!done)
            FailWithSystemError(m_path, step, errno);
    }

    const std::wstring& m_path;
    std::string m_name;
    int m_descriptor = -1;
};

// Makes the change of the folder durable. A failure is none of the save's: the new file is in
// place, and whichever of the two a crash brings back is whole.
void FlushFolder(const std::string& folder) {
    const FileCalls& calls = CurrentFileCalls();
    const int descriptor = calls.open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
    if (descriptor < 0)
        return;
    calls.fsync(descriptor);
    calls.close(descriptor);
}

} // namespace

void ReplaceFile(const std::wstring& path, std::string_view bytes) {
    const ErrnoKeeper keeper;
    if (path.empty() || path.find(L'\0') != std::wstring::npos)
        FailWithSystemError(path, L"using the path", path.empty() ? ENOENT : EINVAL);
    const std::string target = FollowLinks(path);
    const std::optional<struct stat> old = OldFile(path, target);
    const std::string folder = FolderOf(target);
    NewFile file(path, folder, old ? 0600 : 0666);
    if (old)
        file.TakePermissions(*old);
    file.Write(bytes);
    file.Flush();
    file.Close();
    file.MoveTo(target);
    FlushFolder(folder);
}

} // namespace KAXML

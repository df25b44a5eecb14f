#include <kaxml/platform/file.h>

#include <kaxml/platform/system_error.h>
#include <kaxml/platform/wide_text.h>

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace KAXML {

namespace {

constexpr std::size_t kSlice = 16384;

// Opens for reading. Returns -1 with errno set; a directory is a failure here, not at the first
// read.
int OpenForReading(const std::wstring& path) noexcept(false) {
    if (path.find(L'\0') != std::wstring::npos) {
        errno = EINVAL;
        return -1;
    }
    const std::string narrow = Utf8FromWide(path);
    int descriptor;
    do {
        descriptor = open(narrow.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    } while (descriptor < 0 && errno == EINTR);
    struct stat status {};
    if (descriptor >= 0 && fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
        close(descriptor);
        errno = EISDIR;
        return -1;
    }
    return descriptor;
}

std::wstring FailureText(const wchar_t* what, const std::wstring& path, int error) {
    return std::wstring(what) + L" '" + path + L"': " + SystemErrorText(error);
}

bool WriteAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const std::ptrdiff_t count = CurrentFileCalls().write(descriptor, bytes.data(), bytes.size());
        if (count == 0 || (count < 0 && errno != EINTR))
            return false;
        bytes.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return true;
}

std::wstring_view TakeSlice(std::wstring_view& text) {
    const std::wstring_view slice = text.substr(0, WholeLength(text, kSlice));
    text.remove_prefix(slice.size());
    return slice;
}

bool WriteText(int descriptor, std::string_view header, std::wstring_view text) {
    if (!WriteAll(descriptor, header))
        return false;
    while (!text.empty()) {
        if (!WriteAll(descriptor, Utf8FromWide(TakeSlice(text))))
            return false;
    }
    return true;
}

// Closes a descriptor however its scope is left.
class DescriptorCloser {
  public:
    explicit DescriptorCloser(int descriptor) noexcept : m_descriptor(descriptor) {}
    DescriptorCloser(const DescriptorCloser&) = delete;
    DescriptorCloser& operator=(const DescriptorCloser&) = delete;
    ~DescriptorCloser() { Close(); }

    bool Close() noexcept {
        const int descriptor = m_descriptor;
        m_descriptor = -1;
        return descriptor < 0 || CurrentFileCalls().close(descriptor) == 0;
    }

  private:
    int m_descriptor;
};

} // namespace

FileCalls& CurrentFileCalls() noexcept {
    static FileCalls calls{
        [](const char* path, int flags, unsigned mode) { return ::open(path, flags, static_cast<mode_t>(mode)); },
        [](int descriptor, const void* bytes, std::size_t count) {
            return static_cast<std::ptrdiff_t>(::write(descriptor, bytes, count));
        },
        [](int descriptor, unsigned mode) { return ::fchmod(descriptor, static_cast<mode_t>(mode)); },
        [](int descriptor) { return ::fsync(descriptor); },
        [](int descriptor) { return ::close(descriptor); },
        [](const char* from, const char* to) { return ::rename(from, to); },
        [](int descriptor, void* bytes, std::size_t count) {
            return static_cast<std::ptrdiff_t>(::read(descriptor, bytes, count));
        },
    };
    return calls;
}

InputFile::~InputFile() {
    const ErrnoKeeper keeper;
    if (m_descriptor >= 0)
        close(m_descriptor);
}

bool InputFile::Open(const std::wstring& path, std::wstring& reason) {
    const ErrnoKeeper keeper;
    std::wstring newPath = path;
    const int descriptor = OpenForReading(path);
    if (descriptor < 0) {
        reason = FailureText(L"Cannot open", path, errno);
        return false;
    }
    if (m_descriptor >= 0)
        close(m_descriptor);
    m_descriptor = descriptor;
    m_path.swap(newPath);
    return true;
}

std::ptrdiff_t InputFile::Read(char* buffer, std::size_t capacity, std::wstring& reason) {
    const ErrnoKeeper keeper;
    std::ptrdiff_t count;
    do {
        count = CurrentFileCalls().read(m_descriptor, buffer, capacity);
    } while (count < 0 && errno == EINTR);
    if (count < 0)
        reason = FailureText(L"Cannot read", m_path, errno);
    return count;
}

std::wstring CanonicalPath(const std::wstring& path) {
    const ErrnoKeeper keeper;
    if (path.find(L'\0') != std::wstring::npos)
        return path;
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(Utf8FromWide(path).c_str(), nullptr),
                                                               &std::free);
    if (resolved == nullptr && errno == ENOMEM)
        throw std::bad_alloc();
    return resolved != nullptr ? WideFromUtf8(resolved.get()) : path;
}

NewFileResult WriteNewPrivateFile(const std::wstring& path, std::string_view header, std::wstring_view text) {
    const ErrnoKeeper keeper;
    if (path.find(L'\0') != std::wstring::npos)
        return NewFileResult::cannotCreate;
    const std::string narrow = Utf8FromWide(path);
    const int descriptor =
        CurrentFileCalls().open(narrow.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return NewFileResult::cannotCreate;
    DescriptorCloser closer(descriptor);
    const bool written = WriteText(descriptor, header, text);
    if (closer.Close() && written)
        return NewFileResult::written;
    unlink(narrow.c_str());
    return NewFileResult::cannotWrite;
}

} // namespace KAXML

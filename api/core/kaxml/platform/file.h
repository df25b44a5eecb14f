#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// @file
/// Files by wide path. Failures are reported as text a person can act on: what was tried, the
/// path, the system's reason.

namespace KAXML {

/// A file open for reading from its start. Interrupted calls are repeated.
class InputFile {
  public:
    InputFile() = default;
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile();

    /// Opens the file. Returns false and sets `reason` when it cannot be read (missing, no
    /// permission, a directory).
    bool Open(const std::wstring& path, std::wstring& reason);

    /// Reads up to `capacity` bytes. Returns the count, 0 at the end, or -1 with `reason` set.
    std::ptrdiff_t Read(char* buffer, std::size_t capacity, std::wstring& reason);

  private:
    std::wstring m_path;
    int m_descriptor = -1;
};

/// The identity of a file behind links and relative parts of its path, for telling whether two
/// paths name one file. A path that cannot be resolved is its own identity.
std::wstring CanonicalPath(const std::wstring& path);

/// Replaces the file at `path` by these bytes in one step: they go to a new file in the same
/// folder, are flushed to disk, and that file takes the old one's place, with its permissions. A
/// symbolic link is followed. On any failure the old file is untouched and no other file is left.
/// @throws _com_error naming the path, the step that failed and the system's reason.
void ReplaceFile(const std::wstring& path, std::string_view bytes);

/// The system calls that saving makes, and reading's own, one by one, so that tests can fail each of
/// them. Every member behaves as the POSIX call of its name; a negative result is a failure with errno
/// set.
struct FileCalls {
    int (*open)(const char* path, int flags, unsigned mode);
    std::ptrdiff_t (*write)(int descriptor, const void* bytes, std::size_t count);
    int (*fchmod)(int descriptor, unsigned mode);
    int (*fsync)(int descriptor);
    int (*close)(int descriptor);
    int (*rename)(const char* from, const char* to);
    std::ptrdiff_t (*read)(int descriptor, void* bytes, std::size_t count);
};

/// The calls in use; a test may exchange them for its own and must put them back.
FileCalls& CurrentFileCalls() noexcept;

/// Makes a new file that only its owner can read, with these bytes; an existing file or link of
/// the name is a failure.
enum class NewFileResult { written, cannotCreate, cannotWrite };
NewFileResult WriteNewPrivateFile(const std::wstring& path, std::string_view header, std::wstring_view text);

} // namespace KAXML

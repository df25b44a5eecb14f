#include <kaxml/platform/environment.h>

#include <kaxml/platform/system_error.h>
#include <kaxml/platform/wide_text.h>

#include <cstdlib>
#include <filesystem>
#include <new>
#include <system_error>

namespace KAXML {

namespace {

bool IsRegularFile(const std::wstring& path) {
    const ErrnoKeeper keeper;
    std::error_code error;
    return std::filesystem::is_regular_file(std::filesystem::path(Utf8FromWide(path)), error);
}

} // namespace

bool GetCurrentDirectoryW(std::wstring& directory) {
    const ErrnoKeeper keeper;
    std::error_code error;
    const std::filesystem::path current = std::filesystem::current_path(error);
    if (error == std::errc::not_enough_memory)
        throw std::bad_alloc();
    if (error)
        return false;
    directory = WideFromUtf8(current.native());
    return true;
}

bool GetEnvironmentVariableW(const char* name, std::wstring& value) {
    const char* const text = std::getenv(name);
    if (text == nullptr)
        return false;
    value = WideFromUtf8(text);
    return true;
}

std::wstring GetTempPathW() {
    std::wstring directory;
    if (GetEnvironmentVariableW("TMPDIR", directory) && !directory.empty())
        return directory;
    return L"/tmp";
}

bool SearchPathW(std::wstring_view searchPath, std::wstring_view fileName, std::wstring& found) {
    if (fileName.empty() || fileName.find(kPathSeparator) != std::wstring_view::npos)
        return false;
    while (!searchPath.empty()) {
        const std::size_t end = searchPath.find(L';');
        std::wstring candidate(searchPath.substr(0, end));
        searchPath.remove_prefix(end == std::wstring_view::npos ? searchPath.size() : end + 1);
        if (candidate.empty())
            continue;
        if (candidate.back() != kPathSeparator)
            candidate += kPathSeparator;
        candidate += fileName;
        if (IsRegularFile(candidate)) {
            found = std::move(candidate);
            return true;
        }
    }
    return false;
}

} // namespace KAXML

#include <kaxml/platform/console.h>

#include <kaxml/platform/system_error.h>
#include <kaxml/platform/wide_text.h>

#include <cerrno>
#include <cstdio>
#include <unistd.h>

namespace KAXML {

void WriteStandardOutput(std::wstring_view text) {
    const std::string bytes = Utf8FromWide(text);
    const ErrnoKeeper keeper;
    std::fflush(stdout);
    const int descriptor = fileno(stdout);
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t count = write(descriptor, bytes.data() + written, bytes.size() - written);
        if (count < 0 && errno != EINTR)
            break;
        written += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
}

} // namespace KAXML

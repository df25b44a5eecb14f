#include <kaxml/kaxml/core/version.h>

#define KAXML_WIDE_TEXT(number) L## #number
#define KAXML_WIDE(number) KAXML_WIDE_TEXT(number)

namespace KAXML {

const wchar_t* GetLibraryVersion() noexcept {
    return KAXML_WIDE(KAXML_VERSION_MAJOR) L"." KAXML_WIDE(KAXML_VERSION_MINOR) L"." KAXML_WIDE(KAXML_VERSION_PATCH);
}

} // namespace KAXML

#include <kaxml/platform/system_error.h>

#include <kaxml/platform/numbers.h>
#include <kaxml/platform/wide_text.h>

#include <cstring>

namespace KAXML {

std::wstring SystemErrorText(int error) {
    const char* const text = strerrordesc_np(error);
    return text != nullptr ? WideFromUtf8(text) : L"system error " + FormatInt(error);
}

} // namespace KAXML

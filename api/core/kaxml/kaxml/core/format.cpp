#include <kaxml/kaxml/core/format.h>

#include <kaxml/platform/numbers.h>
#include <kaxml/platform/wide_text.h>

namespace KAXML {

FormatArgument::FormatArgument(const char* narrow) : m_text(WideFromUtf8(narrow)) {}
FormatArgument::FormatArgument(long long number) : m_text(FormatInt(number)) {}

std::wstring FormatText(std::wstring_view format, std::initializer_list<FormatArgument> arguments) {
    std::wstring text;
    const FormatArgument* argument = arguments.begin();
    for (std::size_t i = 0; i < format.size(); ++i) {
        const bool converts = format[i] == L'%' && i + 1 < format.size() && argument != arguments.end();
        if (converts) {
            text += (argument++)->Text();
            ++i;
        } else {
            text += format[i];
        }
    }
    return text;
}

} // namespace KAXML

#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace KAXML {

/// An argument of FormatText.
class FormatArgument {
  public:
    FormatArgument(const wchar_t* text) : m_text(text) {}
    FormatArgument(const std::wstring& text) : m_text(text) {}
    FormatArgument(const char* narrow);
    FormatArgument(int number) : FormatArgument(static_cast<long long>(number)) {}
    FormatArgument(unsigned number) : FormatArgument(static_cast<long long>(number)) {}
    FormatArgument(long number) : FormatArgument(static_cast<long long>(number)) {}
    FormatArgument(unsigned long number) : FormatArgument(static_cast<long long>(number)) {}
    FormatArgument(long long number);

    const std::wstring& Text() const noexcept { return m_text; }

  private:
    std::wstring m_text;
};

/// Replaces each conversion of the format (%s a wide text, %S a narrow one, %d and %i a number) by
/// the argument in its place. The arguments carry their own type, so the result is the same on
/// every platform, whatever its own printf makes of %s; a "%" inside an inserted text is an ordinary
/// character. The result is not cut: that is for whoever has a buffer.
std::wstring FormatText(std::wstring_view format, std::initializer_list<FormatArgument> arguments);

/// A text that grows by appending; the way messages are built.
template <typename... Pieces> std::wstring Concat(const Pieces&... pieces) {
    std::wstring text;
    text.reserve((std::wstring_view(pieces).size() + ... + std::size_t{0}));
    (text.append(std::wstring_view(pieces)), ...);
    return text;
}

} // namespace KAXML

#include <kaxml/platform/character_run.h>

#include <kaxml/platform/ascii_copy.h>
#include <kaxml/platform/wide_text.h>

#include <algorithm>

namespace KAXML {

namespace {

constexpr std::size_t kSmallest = 1024;
// Values of a megabyte take twice the time when the room of each is given back to the system.
constexpr std::size_t kLargestKept = 4194304;

constexpr bool IsAscii(char c) noexcept { return static_cast<unsigned char>(c) < 0x80; }

} // namespace

void CharacterRun::Append(std::string_view utf8) {
    // No text takes more units in wide form than in UTF-8.
    if (m_capacity - m_length < utf8.size())
        Grow(utf8.size());
    while (!utf8.empty()) {
        const std::size_t ascii = CopyAscii(utf8.data(), utf8.size(), m_text.get() + m_length);
        m_length += ascii;
        utf8.remove_prefix(ascii);
        if (!utf8.empty())
            AppendOther(utf8);
    }
}

void CharacterRun::Grow(std::size_t length) {
    const std::size_t capacity = std::max({kSmallest, m_length + length, m_capacity * 2});
    std::unique_ptr<wchar_t[]> larger(new wchar_t[capacity]);
    std::copy_n(m_text.get(), m_length, larger.get());
    m_text = std::move(larger);
    m_capacity = capacity;
}

// Takes everything up to the next ASCII character.
void CharacterRun::AppendOther(std::string_view& utf8) {
    const auto end = std::find_if(utf8.begin(), utf8.end(), IsAscii);
    const auto length = static_cast<std::size_t>(end - utf8.begin());
    m_decoded.clear();
    AppendUtf8AsWide(m_decoded, utf8.substr(0, length));
    std::copy(m_decoded.begin(), m_decoded.end(), m_text.get() + m_length);
    m_length += m_decoded.size();
    utf8.remove_prefix(length);
}

void CharacterRun::Clear() noexcept {
    m_length = 0;
    if (m_capacity > kLargestKept) {
        m_text.reset();
        m_capacity = 0;
        std::wstring().swap(m_decoded);
    }
}

} // namespace KAXML

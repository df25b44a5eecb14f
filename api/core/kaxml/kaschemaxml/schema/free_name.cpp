#include <kaxml/kaschemaxml/schema/free_name.h>

#include <kaxml/platform/numbers.h>

#include <algorithm>

namespace KAXML {

namespace {

constexpr std::size_t kFirst = 2;

// The number written in decimal, or `limit` for anything else or more.
std::size_t NumberBelow(std::size_t limit, std::wstring_view text) noexcept {
    if (text.empty() || text.front() == L'0')
        return limit;
    std::size_t number = 0;
    for (const wchar_t c : text) {
        if (c < L'0' || c > L'9' || number >= limit)
            return limit;
        number = 10 * number + static_cast<std::size_t>(c - L'0');
    }
    return std::min(number, limit);
}

} // namespace

void FreeName::Exclude(std::wstring_view listed) noexcept {
    if (!listed.starts_with(m_name))
        return;
    const std::size_t limit = kFirst + m_isTaken.size();
    const std::size_t number = NumberBelow(limit, listed.substr(m_name.size()));
    if (number >= kFirst && number < limit)
        m_isTaken[number - kFirst] = true;
}

std::wstring FreeName::Get() const {
    const auto free = std::find(m_isTaken.begin(), m_isTaken.end(), false);
    return std::wstring(m_name) + FormatInt(static_cast<long long>(kFirst) + (free - m_isTaken.begin()));
}

} // namespace KAXML

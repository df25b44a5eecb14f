#include <kaxml/platform/xml_input.h>

#include <kaxml/platform/wide_text.h>

#include <string_view>

namespace KAXML {

namespace {

constexpr std::wstring_view kFileScheme = L"file:";

bool IsAsciiLetter(wchar_t c) { return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z'); }

wchar_t Lower(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; }

bool EqualIgnoringCase(std::wstring_view text, std::wstring_view lower) {
    if (text.size() != lower.size())
        return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (Lower(text[i]) != lower[i])
            return false;
    }
    return true;
}

bool IsSchemeCharacter(wchar_t c) {
    return IsAsciiLetter(c) || (c >= L'0' && c <= L'9') || c == L'+' || c == L'.' || c == L'-';
}

// A scheme of one letter would be a drive, and what comes before another character a folder.
bool HasOtherScheme(std::wstring_view url) {
    const std::size_t end = url.find(L"://");
    if (end == std::wstring_view::npos || end < 2 || !IsAsciiLetter(url[0]))
        return false;
    for (const wchar_t c : url.substr(0, end)) {
        if (!IsSchemeCharacter(c))
            return false;
    }
    return true;
}

int HexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

bool PercentDecode(const std::string& text, std::string& bytes) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            bytes += text[i];
            continue;
        }
        const int high = i + 2 < text.size() ? HexDigit(text[i + 1]) : -1;
        const int low = i + 2 < text.size() ? HexDigit(text[i + 2]) : -1;
        if (high < 0 || low < 0 || high + low == 0)
            return false;
        bytes += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return true;
}

std::wstring Refusal(const std::wstring& url, const std::wstring& why) { return L"Cannot open '" + url + L"': " + why; }

// Takes the host off what follows the scheme. Returns false for one that is another machine.
bool TakeHost(std::wstring_view& rest, std::wstring_view& host) {
    if (!rest.starts_with(L"//"))
        return true;
    rest.remove_prefix(2);
    host = rest.substr(0, rest.find(L'/'));
    rest.remove_prefix(host.size());
    return host.empty() || EqualIgnoringCase(host, L"localhost");
}

bool PathFromFileUrl(const std::wstring& url, std::wstring& path, std::wstring& reason) {
    std::wstring_view rest = std::wstring_view(url).substr(kFileScheme.size());
    std::wstring_view host;
    if (!TakeHost(rest, host)) {
        reason = Refusal(url, L"the host '" + std::wstring(host) + L"' is not this machine");
        return false;
    }
    std::string bytes;
    const bool isDecoded = PercentDecode(Utf8FromWide(rest), bytes);
    std::wstring decoded = WideFromUtf8(bytes);
    if (!isDecoded || Utf8FromWide(decoded) != bytes) {
        reason = Refusal(url, L"it holds a malformed escape");
        return false;
    }
    path = std::move(decoded);
    return true;
}

} // namespace

bool PathFromUrl(const std::wstring& url, std::wstring& path, std::wstring& reason) {
    if (EqualIgnoringCase(std::wstring_view(url).substr(0, kFileScheme.size()), kFileScheme))
        return PathFromFileUrl(url, path, reason);
    if (HasOtherScheme(url)) {
        reason = Refusal(url, L"only files and file: URLs can be read");
        return false;
    }
    path = url;
    return true;
}

} // namespace KAXML

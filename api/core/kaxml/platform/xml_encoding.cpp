#include <kaxml/platform/xml_encoding.h>

#include <kaxml/platform/text_decoder.h>
#include <kaxml/platform/wide_text.h>

#include <algorithm>
#include <optional>

using namespace std::literals;

namespace KAXML {

namespace {

// Encodings that differ in width and order of their units, told apart by the first bytes.
struct Family {
    const char* name; // empty for everything that agrees with ASCII
    std::size_t unit;
    std::size_t letter; // where in a unit an ASCII character has its byte
    std::string_view mark;
    std::string_view opening; // the bytes of "<?" or, for four-byte units, of "<"
};

// The four-byte marks stand before the two-byte ones that they begin with.
constexpr Family kFamilies[] = {
    {"UTF-32LE", 4, 0, "\xFF\xFE\x00\x00"sv, "<\0\0\0"sv},
    {"UTF-32BE", 4, 3, "\x00\x00\xFE\xFF"sv, "\0\0\0<"sv},
    {"UTF-16LE", 2, 0, "\xFF\xFE"sv, "<\0?\0"sv},
    {"UTF-16BE", 2, 1, "\xFE\xFF"sv, "\0<\0?"sv},
    {"", 1, 0, "\xEF\xBB\xBF"sv, ""sv},
};

const Family& FamilyOf(std::string_view head, bool& isMarked) {
    for (const Family& family : kFamilies) {
        isMarked = head.starts_with(family.mark);
        if (isMarked || head.starts_with(family.opening))
            return family;
    }
    return kFamilies[std::size(kFamilies) - 1];
}

constexpr bool IsAsciiText(char c) { return c != '\0' && static_cast<unsigned char>(c) < 0x80; }

// The leading ASCII characters of the bytes.
std::string AsciiText(std::string_view bytes, const Family& family) {
    if (family.unit == 1)
        return std::string(bytes.begin(), std::find_if_not(bytes.begin(), bytes.end(), IsAsciiText));
    std::string text;
    for (; bytes.size() >= family.unit; bytes.remove_prefix(family.unit)) {
        for (std::size_t i = 0; i < family.unit; ++i) {
            if (i != family.letter && bytes[i] != '\0')
                return text;
        }
        if (!IsAsciiText(bytes[family.letter]))
            return text;
        text += bytes[family.letter];
    }
    return text;
}

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
bool IsAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

std::string UpperCase(std::string_view text) {
    std::string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), Upper);
    return upper;
}

// Walks the name="value" pairs of an XML declaration.
class DeclarationScanner {
  public:
    explicit DeclarationScanner(std::string_view text) : m_text(text), m_at(5) {}

    bool NextPair() {
        SkipSpace();
        const std::size_t nameBegin = m_at;
        while (m_at < m_text.size() && IsAsciiLetter(m_text[m_at]))
            ++m_at;
        name = m_text.substr(nameBegin, m_at - nameBegin);
        SkipSpace();
        if (name.empty() || !Take('='))
            return false;
        SkipSpace();
        return TakeValue();
    }

    std::string_view name;
    std::string_view value;

  private:
    void SkipSpace() {
        while (m_at < m_text.size() && IsSpace(m_text[m_at]))
            ++m_at;
    }

    bool Take(char c) {
        const bool taken = m_at < m_text.size() && m_text[m_at] == c;
        m_at += taken ? 1 : 0;
        return taken;
    }

    bool TakeValue() {
        const char quote = m_at < m_text.size() ? m_text[m_at] : '\0';
        const std::size_t end = quote == '"' || quote == '\'' ? m_text.find(quote, m_at + 1) : std::string_view::npos;
        if (end == std::string_view::npos)
            return false;
        value = m_text.substr(m_at + 1, end - m_at - 1);
        m_at = end + 1;
        return true;
    }

    std::string_view m_text;
    std::size_t m_at;
};

bool BeginsDeclaration(std::string_view text) {
    return text.size() > 5 && text.starts_with("<?xml") && IsSpace(text[5]);
}

// The encoding that an XML declaration names, as a part of the text. A malformed declaration
// names none; the parser will refuse it.
std::optional<std::string_view> DeclaredEncoding(std::string_view text) {
    if (!BeginsDeclaration(text))
        return std::nullopt;
    DeclarationScanner scanner(text);
    while (scanner.NextPair()) {
        if (scanner.name == "encoding")
            return scanner.value;
    }
    return std::nullopt;
}

bool IsEncodingName(std::string_view name) {
    const auto belongs = [](char c) {
        return IsAsciiLetter(c) || (c >= '0' && c <= '9') || c == '.' || c == '_' || c == '-';
    };
    return !name.empty() && IsAsciiLetter(name[0]) && std::all_of(name.begin(), name.end(), belongs);
}

// Names that stand for the family's encoding whatever its byte order.
bool NamesFamily(const std::string& upperName, const Family& family) {
    switch (family.unit) {
    case 4:
        return upperName == family.name || upperName == "UTF-32" || upperName == "ISO-10646-UCS-4";
    case 2:
        return upperName == family.name || upperName == "UTF-16" || upperName == "ISO-10646-UCS-2";
    default:
        return upperName == "UTF-8" || upperName == "UTF8";
    }
}

void Refuse(XmlEncoding& encoding, std::string_view text, std::string_view declared, const wchar_t* why) {
    encoding.refusal = L"The encoding '" + WideFromUtf8(declared) + L"' " + why;
    encoding.textBeforeRefusal = text.substr(0, static_cast<std::size_t>(declared.data() - text.data()));
}

// Whether the declaration, read in the encoding that it names, says what it says in ASCII.
bool DeclarationAgrees(TextDecoder& decoder, std::string_view upToName) {
    std::string bytes(upToName);
    std::string utf8;
    return decoder.Decode(bytes, utf8) && bytes.empty() && utf8 == upToName;
}

void UseDeclaredCharset(XmlEncoding& encoding, std::string_view text, std::string_view declared) {
    const std::unique_ptr<TextDecoder> decoder = TextDecoder::Create(std::string(declared));
    const auto end = static_cast<std::size_t>(declared.data() + declared.size() - text.data());
    if (decoder == nullptr)
        Refuse(encoding, text, declared, L"is not known");
    else if (!DeclarationAgrees(*decoder, text.substr(0, end)))
        Refuse(encoding, text, declared, L"contradicts the bytes of the file");
    else
        encoding.name = declared;
}

// A declaration that fills all that is looked at could still name an encoding behind it.
void RefuseEndlessDeclaration(XmlEncoding& encoding, const std::string& text) {
    if (!BeginsDeclaration(text) || text.find("?>") != std::string::npos)
        return;
    encoding.refusal = L"The XML declaration is too long";
    encoding.textBeforeRefusal = text;
}

// Without a mark and a name, what looks like another encoding is no text of this one.
void RefuseUnnamedEncoding(XmlEncoding& encoding, bool isMarked) {
    if (!isMarked && !encoding.name.empty() && encoding.refusal.empty())
        encoding.refusal = L"The file has no byte order mark and names no encoding, and it is no text in 'UTF-8'";
}

} // namespace

XmlEncoding DetectEncoding(std::string_view head) {
    head = head.substr(0, kXmlDeclarationLimit);
    XmlEncoding encoding;
    bool isMarked = false;
    const Family& family = FamilyOf(head, isMarked);
    encoding.markLength = isMarked ? family.mark.size() : 0;
    encoding.name = family.name;
    const std::string text = AsciiText(head.substr(encoding.markLength), family);
    const bool fillsHead =
        head.size() == kXmlDeclarationLimit && text.size() == (head.size() - encoding.markLength) / family.unit;
    const std::optional<std::string_view> declared = DeclaredEncoding(text);
    if (!declared && fillsHead)
        RefuseEndlessDeclaration(encoding, text);
    if (!declared) {
        RefuseUnnamedEncoding(encoding, isMarked);
        return encoding;
    }
    if (!IsEncodingName(*declared))
        Refuse(encoding, text, *declared, L"is no encoding's name");
    else if (NamesFamily(UpperCase(*declared), family))
        return encoding;
    else if (isMarked || family.unit > 1)
        Refuse(encoding, text, *declared, L"contradicts the bytes of the file");
    else
        UseDeclaredCharset(encoding, text, *declared);
    return encoding;
}

} // namespace KAXML

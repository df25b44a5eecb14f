#include <kaxml/platform/xml_input.h>

#include <kaxml/platform/file.h>
#include <kaxml/platform/text_decoder.h>
#include <kaxml/platform/wide_text.h>
#include <kaxml/platform/xml_encoding.h>
#include <kaxml/platform/xml_name.h>

#include <algorithm>
#include <cstring>
#include <string_view>

namespace KAXML {

namespace {

constexpr char kPoison = static_cast<char>(0xFF);

// Input that is made slice by slice.
class SlicedInput : public XmlInput {
  public:
    std::size_t Read(char* buffer, std::size_t capacity) final {
        std::size_t filled = 0;
        while (filled < capacity && (m_next < m_slice.size() || TakeSlice())) {
            const std::size_t count = std::min(capacity - filled, m_slice.size() - m_next);
            std::memcpy(buffer + filled, m_slice.data() + m_next, count);
            m_next += count;
            filled += count;
        }
        return filled;
    }

    const std::wstring& Failure() const noexcept final { return m_failure; }

  protected:
    // Appends the next slice, perhaps nothing, and calls End or Break when it was the last.
    virtual void MakeSlice(std::string& utf8) = 0;

    void End() noexcept { m_isAtEnd = true; }

    void Break(std::string& utf8, std::wstring reason) {
        utf8 += kPoison;
        m_failure = std::move(reason);
        m_isAtEnd = true;
    }

  private:
    bool TakeSlice() {
        m_slice.clear();
        m_next = 0;
        while (m_slice.empty() && !m_isAtEnd)
            MakeSlice(m_slice);
        return !m_slice.empty();
    }

    std::string m_slice;
    std::size_t m_next = 0;
    std::wstring m_failure;
    bool m_isAtEnd = false;
};

class WideInput final : public SlicedInput {
  public:
    explicit WideInput(const wchar_t* text) noexcept : m_next(text) {
        if (static_cast<char32_t>(*m_next) == 0xFEFF)
            ++m_next;
    }

  private:
    void MakeSlice(std::string& utf8) override {
        const char32_t broken = TakeAsUtf8(utf8, m_next, InputSliceSize());
        if (broken != 0)
            Break(utf8, L"The text holds " + CodePointName(broken) + L", which is no character");
        else if (*m_next == L'\0')
            End();
    }

    const wchar_t* m_next;
};

// An open file with the bytes that were read to find its encoding.
struct OpenedFile {
    InputFile file;
    std::string head;
    std::wstring failure;

    // Appends a slice. Returns false at the end or at a failure. The first slices are smaller: making room
    // for large ones took a third of the instructions for a file of 1 KB.
    bool ReadSlice(std::string& bytes) {
        if (m_isAtEnd)
            return false;
        const std::size_t size = bytes.size();
        const std::size_t wanted = std::min(m_nextSlice, InputSliceSize());
        bytes.resize(size + wanted);
        const std::ptrdiff_t count = file.Read(bytes.data() + size, wanted, failure);
        bytes.resize(size + (count > 0 ? static_cast<std::size_t>(count) : 0));
        m_isAtEnd = count <= 0;
        m_nextSlice = wanted * kGrowth;
        return !m_isAtEnd;
    }

  private:
    static constexpr std::size_t kGrowth = 4;

    std::size_t m_nextSlice = kXmlDeclarationLimit;
    bool m_isAtEnd = false;
};

class FileInput final : public SlicedInput {
  public:
    FileInput(std::unique_ptr<OpenedFile> file, XmlEncoding encoding)
        : m_file(std::move(file)), m_encoding(std::move(encoding)) {
        if (!m_encoding.name.empty())
            m_decoder = TextDecoder::Create(m_encoding.name);
        m_bytes = m_file->head.substr(m_encoding.markLength);
        m_file->head.clear();
    }

  private:
    void MakeSlice(std::string& utf8) override {
        if (!m_encoding.refusal.empty()) {
            utf8 += m_encoding.textBeforeRefusal;
            Break(utf8, m_encoding.refusal);
        } else if (!m_encoding.name.empty()) {
            MakeDecodedSlice(utf8);
        } else {
            utf8 += m_bytes;
            m_bytes.clear();
            if (!m_file->ReadSlice(utf8))
                Finish(utf8);
        }
    }

    void MakeDecodedSlice(std::string& utf8) {
        const bool isAtEnd = !m_file->ReadSlice(m_bytes);
        const bool isText = m_decoder != nullptr && m_decoder->Decode(m_bytes, utf8) &&
                            (!isAtEnd || !m_file->failure.empty() || (m_bytes.empty() && m_decoder->Finish(utf8)));
        if (!isText)
            Break(utf8, L"The bytes are no text in the encoding '" + WideFromUtf8(m_encoding.name) + L"'");
        else if (isAtEnd)
            Finish(utf8);
    }

    void Finish(std::string& utf8) {
        if (m_file->failure.empty())
            End();
        else
            Break(utf8, m_file->failure);
    }

    std::unique_ptr<OpenedFile> m_file;
    XmlEncoding m_encoding;
    std::unique_ptr<TextDecoder> m_decoder;
    std::string m_bytes;
};

} // namespace

std::unique_ptr<XmlInput> OpenWideText(const wchar_t* text) { return std::make_unique<WideInput>(text); }

std::unique_ptr<XmlInput> OpenFile(const std::wstring& path, std::wstring& reason) {
    auto opened = std::make_unique<OpenedFile>();
    if (!opened->file.Open(path, reason))
        return nullptr;
    while (opened->head.size() < kXmlDeclarationLimit && opened->ReadSlice(opened->head)) {
    }
    XmlEncoding encoding = DetectEncoding(opened->head);
    return std::make_unique<FileInput>(std::move(opened), std::move(encoding));
}

std::size_t& InputSliceSize() noexcept {
    static std::size_t size = 65536;
    return size;
}

} // namespace KAXML

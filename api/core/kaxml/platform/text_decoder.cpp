#include <kaxml/platform/text_decoder.h>

#include <kaxml/platform/system_error.h>

#include <cstdint>
#include <new>

namespace KAXML {

namespace {

constexpr std::size_t kOutput = 8192;

// iconv_open's only way to say that it failed.
bool IsOpen(iconv_t handle) noexcept { return reinterpret_cast<std::intptr_t>(handle) != -1; }

} // namespace

std::unique_ptr<TextDecoder> TextDecoder::Create(const std::string& encoding) {
    const ErrnoKeeper keeper;
    const iconv_t handle = iconv_open("UTF-8", encoding.c_str());
    if (IsOpen(handle)) {
        auto* const decoder = new (std::nothrow) TextDecoder(handle);
        if (decoder != nullptr)
            return std::unique_ptr<TextDecoder>(decoder);
        iconv_close(handle);
        throw std::bad_alloc();
    }
    if (errno == ENOMEM)
        throw std::bad_alloc();
    return nullptr;
}

TextDecoder::~TextDecoder() { iconv_close(m_handle); }

bool TextDecoder::Convert(char** input, std::size_t* left, std::string& utf8) {
    const ErrnoKeeper keeper;
    char buffer[kOutput];
    for (;;) {
        char* output = buffer;
        std::size_t room = sizeof buffer;
        const std::size_t result = iconv(m_handle, input, left, &output, &room);
        utf8.append(buffer, output);
        if (result != static_cast<std::size_t>(-1))
            return true;
        if (errno != E2BIG)
            return errno == EINVAL;
    }
}

bool TextDecoder::Decode(std::string& bytes, std::string& utf8) {
    char* next = bytes.data();
    std::size_t left = bytes.size();
    const bool isText = Convert(&next, &left, utf8);
    bytes.erase(0, bytes.size() - left);
    return isText;
}

bool TextDecoder::Finish(std::string& utf8) { return Convert(nullptr, nullptr, utf8); }

} // namespace KAXML

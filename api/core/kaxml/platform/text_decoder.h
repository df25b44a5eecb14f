#pragma once

#include <iconv.h>
#include <memory>
#include <string>

namespace KAXML {

/// Decodes the bytes of one named encoding to UTF-8, piece by piece.
class TextDecoder {
  public:
    /// Returns null for an encoding that the system does not know.
    static std::unique_ptr<TextDecoder> Create(const std::string& encoding);

    TextDecoder(const TextDecoder&) = delete;
    TextDecoder& operator=(const TextDecoder&) = delete;
    ~TextDecoder();

    /// Appends to `utf8` what `bytes` hold and removes it from there; the start of a character
    /// whose rest is to come stays. Returns false at bytes that are no text, everything before
    /// them having been appended.
    bool Decode(std::string& bytes, std::string& utf8);

    /// Appends what an encoding with states held back at the end.
    bool Finish(std::string& utf8);

  private:
    explicit TextDecoder(iconv_t handle) noexcept : m_handle(handle) {}
    bool Convert(char** input, std::size_t* left, std::string& utf8);

    iconv_t m_handle;
};

} // namespace KAXML

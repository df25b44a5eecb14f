#pragma once

#include <kaxml/platform/wide_text.h>
#include <kaxml/platform/xml_input.h>
#include <kaxml/platform/xml_parser.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

/// What the tests of the platform layer share.
namespace KAXML::Test {

/// A folder of its own for one test, removed with everything in it.
class TemporaryFolder {
  public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "kaxml-test-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("no temporary folder");
        m_path = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::remove_all(m_path, error);
    }

    std::filesystem::path operator/(const std::string& name) const { return m_path / name; }
    const std::filesystem::path& Path() const { return m_path; }

    std::wstring Write(const std::string& name, const std::string& bytes) const {
        std::ofstream(m_path / name, std::ios::binary) << bytes;
        return WideFromUtf8((m_path / name).string());
    }

    std::size_t FileCount() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(m_path), std::filesystem::directory_iterator()));
    }

  private:
    std::filesystem::path m_path;
};

inline std::string BytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

/// Runs a test with the parser's input cut into slices of several sizes.
template <typename Run> void AtEverySliceSize(Run run) {
    const std::size_t usual = InputSliceSize();
    for (const std::size_t size : {std::size_t{1}, std::size_t{7}, std::size_t{4096}, usual}) {
        SCOPED_TRACE("slices of " + std::to_string(size));
        InputSliceSize() = size;
        run();
        InputSliceSize() = usual;
    }
}

/// The characters as text of one width.
template <typename Char> std::basic_string<Char> TextOf(std::u32string_view characters) {
    std::basic_string<Char> text;
    for (const char32_t c : characters)
        AppendCodePoint(text, c);
    return text;
}

/// Does the same at every event.
struct EveryEvent final : XmlEvents {
    void StartElement(const XmlName&, const XmlStartTag&) override { note(); }
    void EndElement(const XmlName&) override { note(); }
    void Text(std::string_view) override { note(); }
    void CDataSection(std::string_view) override { note(); }
    void Comment(std::string_view) override { note(); }
    void ProcessingInstruction(std::string_view, std::string_view) override { note(); }
    std::function<void()> note = [] {};
};

/// Fails the test when something was written to standard error during its life.
class NothingPrinted {
  public:
    NothingPrinted() { testing::internal::CaptureStderr(); }
    NothingPrinted(const NothingPrinted&) = delete;
    NothingPrinted& operator=(const NothingPrinted&) = delete;
    ~NothingPrinted() { EXPECT_EQ(testing::internal::GetCapturedStderr(), ""); }
};

} // namespace KAXML::Test

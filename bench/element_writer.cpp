#include "element_writer.h"

#include <stdexcept>

namespace bench {
namespace {

constexpr std::size_t kFlushAt = 1 << 20;

} // namespace

ElementWriter::ElementWriter(const std::filesystem::path& file, bool isIndented)
    : m_path(file), m_file(file, std::ios::binary), m_isIndented(isIndented) {
    m_buffer = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
}

void ElementWriter::Open(std::string_view name, std::string_view attributes) {
    StartLine();
    Tag(name, attributes);
    EndLine();
    m_open.emplace_back(name);
}

void ElementWriter::Close() {
    const std::string name = std::move(m_open.back());
    m_open.pop_back();
    StartLine();
    m_buffer.append("</").append(name).append(">");
    EndLine();
}

void ElementWriter::Leaf(std::string_view name, std::string_view text) {
    StartLine();
    Tag(name, {});
    m_buffer.append(text).append("</").append(name).append(">");
    EndLine();
}

void ElementWriter::Finish() {
    Flush();
    if (!m_file.flush())
        throw std::runtime_error("cannot write " + m_path.string());
}

void ElementWriter::Tag(std::string_view name, std::string_view attributes) {
    m_buffer.append("<").append(name);
    if (!attributes.empty())
        m_buffer.append(" ").append(attributes);
    m_buffer.append(">");
}

void ElementWriter::StartLine() {
    if (m_isIndented)
        m_buffer.append(2 * m_open.size(), ' ');
}

void ElementWriter::EndLine() {
    if (m_isIndented)
        m_buffer.append("\n");
    if (m_buffer.size() >= kFlushAt)
        Flush();
}

void ElementWriter::Flush() {
    m_file.write(m_buffer.data(), static_cast<std::streamsize>(m_buffer.size()));
    m_written += m_buffer.size();
    m_buffer.clear();
}

} // namespace bench

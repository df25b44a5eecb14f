#pragma once

#include <cstddef>
#include <memory>
#include <string>

/// @file
/// Where XML comes from. Every input, a file in any encoding or wide text, reaches the parser as
/// UTF-8 bytes, so that one decoder's rules hold for all.

namespace KAXML {

/// A source of UTF-8 bytes for the parser.
///
/// A source that breaks (a read error, bytes that are no text in the document's encoding, an
/// unknown encoding) hands out everything before the break, then one byte 0xFF, which UTF-8 never
/// holds, then the end. So the parser stops exactly there, and the break has a line and column;
/// Failure() then says what happened.
class XmlInput {
  public:
    virtual ~XmlInput() = default;

    /// Fills the buffer as far as there is input: a count below `capacity` means the end is near,
    /// 0 that it is reached. The parser looks ahead within what it has, so a short read in the
    /// middle of a document could split a piece of markup.
    virtual std::size_t Read(char* buffer, std::size_t capacity) = 0;

    /// Why the input broke; empty while it did not.
    virtual const std::wstring& Failure() const noexcept = 0;
};

/// Input from null-terminated wide text, which must outlive it. The text is converted in slices
/// and never copied whole. An encoding named in the XML declaration means nothing here.
std::unique_ptr<XmlInput> OpenWideText(const wchar_t* text);

/// Input from a file: UTF-8 and UTF-16 of both orders by their marks, other encodings by the XML
/// declaration. Returns null and sets `reason` when the file cannot be opened.
std::unique_ptr<XmlInput> OpenFile(const std::wstring& path, std::wstring& reason);

/// The path behind a client's URL or path: `file:` URLs are percent-decoded, a text without a
/// scheme is a path as it stands. Returns false and sets `reason` for any other scheme, a foreign
/// host or a malformed escape.
bool PathFromUrl(const std::wstring& url, std::wstring& path, std::wstring& reason);

/// How many bytes a file source, or characters a wide source, hands on at a time. For tests that
/// move the borders of the slices; at least 1.
std::size_t& InputSliceSize() noexcept;

} // namespace KAXML

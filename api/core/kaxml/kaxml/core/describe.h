#pragma once

#include <kaxml/kaxml/core/errors.h>
#include <kaxml/kaxml/core/logging.h>
#include <kaxml/platform/com_error.h>

#include <iosfwd>
#include <string>

/// @file
/// Errors and severities as text for people: as wide text, and on the standard library's streams.
///
/// @code
/// try {
///     schema.ReadXML(L"Plant.01.00.kaschema.xml");
/// } catch (const KAXML::KAXMLException& error) {
///     std::cerr << error << '\n'; // "KAXMLRuntimeError: ... @ CKaSchemaReference::ReadXML"
/// }
/// @endcode
///
/// Narrow streams get UTF-8, which is what files and terminals take on most systems. Wide streams get
/// wide text; how they turn it into bytes depends on their locale, and in the locale that a program
/// starts with most stop at the first character that is not ASCII. The functions keep no state and may
/// run on several threads at once.

namespace KAXML {

/// The class of an error, its message and, when there is one, its location:
/// "KAXMLFormatError: message @ location". For a class of the client's it is the name of the nearest
/// class of the library that it derives from.
KAXML_API std::wstring Describe(const KAXMLException& error);
/// The same for a failure of the XML service, with its status: "_com_error 0x80004005: description
/// @ source". Without a description the general text of the status stands in its place.
KAXML_API std::wstring Describe(const _com_error& error);
/// "error", "warning", "info" or "trace"; "unknown" for another value. Never null, lives for ever.
KAXML_API const wchar_t* Describe(LOG_SEV severity) noexcept;
/// What the exception that is being handled says: Describe for what the library throws, what() for the
/// standard library's classes, "unknown exception" for the rest. For a catch (...) that is to report
/// every failure; empty outside a handler.
KAXML_API std::wstring DescribeCurrentException();

/// @name Output
/// @{

/// Writes what Describe says, as one text for the stream's width and padding. Returns the stream.
KAXML_API std::ostream& operator<<(std::ostream& out, const KAXMLException& error);
KAXML_API std::wostream& operator<<(std::wostream& out, const KAXMLException& error);
KAXML_API std::ostream& operator<<(std::ostream& out, const _com_error& error);
KAXML_API std::wostream& operator<<(std::wostream& out, const _com_error& error);
KAXML_API std::ostream& operator<<(std::ostream& out, LOG_SEV severity);
KAXML_API std::wostream& operator<<(std::wostream& out, LOG_SEV severity);
/// @}

/// The UTF-8 bytes of a wide text, for narrow streams, files and other libraries. What is no character
/// becomes U+FFFD.
KAXML_API std::string ToUtf8(const std::wstring& text);

} // namespace KAXML

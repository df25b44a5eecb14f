#pragma once

namespace KAXML {

/// A letter in every process: a character of Unicode's letter categories in the basic plane. The
/// three of them that XML allows in no name (feminine and masculine ordinal, micro sign) are left
/// out, so that every name the library finds valid can be an element's name.
bool IsLetter(wchar_t character) noexcept;

/// A letter, or a decimal digit of any script.
bool IsLetterOrDigit(wchar_t character) noexcept;

} // namespace KAXML

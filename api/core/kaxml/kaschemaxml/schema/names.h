#pragma once

#include <string_view>

namespace KAXML {

/// Kinds of names, as messages call them.
inline constexpr std::wstring_view kSchemaNameKind = L"KaSchema";
inline constexpr std::wstring_view kClassNameKind = L"KaClass or KaProperty";

/// The one rule for names: a letter or underscore, then letters, digits or underscores. Returns 1,
/// or 0 without `throwOnError`.
/// @throws KAXMLLogicError for null, always; KAXMLDomainError with `throwOnError`.
int NameIsValid(const wchar_t* name, int throwOnError, std::wstring_view kind);

} // namespace KAXML

#pragma once

#include <string>

namespace KAXML {

/// Kinds of names, as messages call them.
inline constexpr wchar_t kSchemaNameKind[] = L"KaSchema";
inline constexpr wchar_t kClassNameKind[] = L"KaClass or KaProperty";

/// The one rule for names: a letter or underscore, then letters, digits or underscores. Returns 1,
/// or 0 without `throwOnError`.
/// @throws KAXMLLogicError for null, always; KAXMLDomainError with `throwOnError`.
int NameIsValid(const wchar_t* name, int throwOnError, const std::wstring& kind);

} // namespace KAXML

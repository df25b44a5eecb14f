#pragma once

/// @file
/// Names that schema files and instance documents share with their clients.

namespace KAXML {

/// The namespace of schema files and of the root of instance documents, version 2.0.
inline constexpr wchar_t KAXML_NAMESPACE_URI[] = L"http://corvane.example/schemas/Corvane.KAXML.2.0";
/// The namespace of version 1.2, which the reader recognises and refuses.
inline constexpr wchar_t KAXML_LEGACY_NAMESPACE_URI[] = L"http://corvane.example/schemas/1.2/KAXML";

/// Truth values as they are written; they are read ignoring letter case.
inline constexpr wchar_t KAXML_TRUE[] = L"True";
/// See KAXML_TRUE.
inline constexpr wchar_t KAXML_FALSE[] = L"False";

/// The class name that stands for any class in relationship ends.
inline constexpr wchar_t KAXML_ANY_CLASS[] = L"KaObject";

/// Bits of a class type, and the mask that matches every class.
enum KaClassType : unsigned long {
    KA_DOMAIN_CLASS = 0x1,           ///< an ordinary class
    KA_STRUCT_CLASS = 0x2,           ///< a class used as the type of properties
    KA_CUSTOM_ATTRIBUTE_CLASS = 0x4, ///< a class of custom attributes
    KA_ANY_CLASS_TYPE = 0xFFFFFFFF   ///< as a mask: every class, whatever its flags
};

} // namespace KAXML

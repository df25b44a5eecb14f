#pragma once

/// @file
/// Marks what the library exports; everything else in it is hidden.

/// @def KAXML_API
/// Marks what the library exports.
#if defined(_WIN32) && !defined(KAXML_STATIC)
#if defined(KAXML_BUILDING)
#define KAXML_API __declspec(dllexport)
#else
#define KAXML_API __declspec(dllimport)
#endif
#elif defined(_WIN32)
#define KAXML_API
#else
#define KAXML_API __attribute__((visibility("default")))
#endif

/// Marks what an exported class keeps to itself.
#if defined(_WIN32)
#define KAXML_LOCAL
#else
#define KAXML_LOCAL __attribute__((visibility("hidden")))
#endif

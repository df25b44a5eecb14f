#pragma once

/// @file
/// The one export macro. Everything else in the library is hidden.

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

// SPDX-License-Identifier: MIT
#pragma once

/// Marks what the library exports; everything else stays hidden. TREVALLO_BUILDING is set while the shared
/// library is compiled, TREVALLO_STATIC (also by users, through the CMake target) for the static one.
#if defined(TREVALLO_STATIC)
#define TREVALLO_EXPORT
#elif defined(_WIN32)
#if defined(TREVALLO_BUILDING)
#define TREVALLO_EXPORT __declspec(dllexport)
#else
#define TREVALLO_EXPORT __declspec(dllimport)
#endif
#else
#define TREVALLO_EXPORT __attribute__((visibility("default")))
#endif

/// Marks what stays hidden although it is in an exported class.
#if defined(__GNUC__) && !defined(_WIN32) && !defined(TREVALLO_STATIC)
#define TREVALLO_HIDDEN __attribute__((visibility("hidden")))
#else
#define TREVALLO_HIDDEN
#endif

/// Lets compilers that can do so check printf-style arguments (positions counted from 1, static functions).
#if defined(__GNUC__)
#define TREVALLO_PRINTF(formatPosition, firstArgument) __attribute__((format(printf, formatPosition, firstArgument)))
#else
#define TREVALLO_PRINTF(formatPosition, firstArgument)
#endif

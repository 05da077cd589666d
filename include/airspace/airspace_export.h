// SPDX-License-Identifier: MIT
#pragma once

#include <modes/export.h> // TREVALLO_HIDDEN

/// Marks what the library exports; everything else stays hidden. TREVALLO_AIRSPACE_BUILDING is set while the
/// shared library is compiled, TREVALLO_STATIC (also by users, through the CMake target) for the static one.
#if defined(TREVALLO_STATIC)
#define TREVALLO_AIRSPACE_EXPORT
#elif defined(_WIN32)
#if defined(TREVALLO_AIRSPACE_BUILDING)
#define TREVALLO_AIRSPACE_EXPORT __declspec(dllexport)
#else
#define TREVALLO_AIRSPACE_EXPORT __declspec(dllimport)
#endif
#else
#define TREVALLO_AIRSPACE_EXPORT __attribute__((visibility("default")))
#endif

// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define TREVALLO_FUZZ_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TREVALLO_FUZZ_ADDRESS_SANITIZER
#endif
#endif

#ifdef TREVALLO_FUZZ_ADDRESS_SANITIZER
extern "C" std::size_t __sanitizer_get_current_allocated_bytes(); // not every compiler brings its header
#else
#include <malloc.h>
#endif

namespace quorvel::fuzz {

/// Bytes of memory that the process holds on the heap.
inline std::size_t heapBytes() {
#ifdef TREVALLO_FUZZ_ADDRESS_SANITIZER
    return __sanitizer_get_current_allocated_bytes();
#else
    return mallinfo2().uordblks;
#endif
}

} // namespace quorvel::fuzz

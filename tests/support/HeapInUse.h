// How much memory of the heap a test program holds.
#pragma once

#include <malloc.h>

#include <cstddef>

// Only in programs with a sanitizer, which has a heap of its own.
extern "C" __attribute__((weak)) std::size_t __sanitizer_get_current_allocated_bytes();

namespace dovrel::test {

/// The bytes in blocks that are not freed, including large blocks that have a mapping of their own. Small
/// blocks that the heap keeps for the same thread's next request count as well, so leave some room when
/// comparing.
inline std::size_t heapInUse() {
    if (__sanitizer_get_current_allocated_bytes != nullptr) return __sanitizer_get_current_allocated_bytes();
    const struct mallinfo2 information = mallinfo2();
    return information.uordblks + information.hblkhd;
}

}  // namespace dovrel::test

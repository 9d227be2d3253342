// Measures how much heap memory a test program holds.
#pragma once

#include <malloc.h>

#include <cstddef>

// Defined only in programs with a sanitizer, which has its own heap.
extern "C" __attribute__((weak)) std::size_t __sanitizer_get_current_allocated_bytes();

namespace dovrel::test {

/// Returns the bytes in allocated blocks, including large blocks that have a mapping of
/// their own. Small freed blocks that the heap keeps for the thread's next request also
/// count, so allow a margin when comparing.
inline std::size_t heapInUse() {
    if (__sanitizer_get_current_allocated_bytes != nullptr) return __sanitizer_get_current_allocated_bytes();
    const struct mallinfo2 information = mallinfo2();
    return information.uordblks + information.hblkhd;
}

}  // namespace dovrel::test

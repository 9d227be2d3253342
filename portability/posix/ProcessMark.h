// Distinguishes a process from the one that it was forked from. Private to the layer.
#pragma once

#include <cstdint>

namespace portability {

/// Returns a number that stays the same within a process and differs in a process forked from it. It is never
/// 0. The function normally makes no system call, so it can be called before every use of data that a forked
/// process must not share. Thread-safe.
uint32_t processMark();

}  // namespace portability

// Telling a process from the one that it was forked from. Private to the layer.
#pragma once

#include <cstdint>

namespace portability {

/// A number that is always the same in one process and another one in a process forked from it. Never 0.
/// Costs no system call, so it can be asked for at every use of what a forked process must not share. Any
/// thread.
uint32_t processMark();

}  // namespace portability

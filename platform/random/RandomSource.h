// The random source of the process: one of two BaseRandom objects. Each is constructed at its first
// use (which throws std::bad_alloc if memory runs out). It is never destroyed, so exit handlers can
// still use it. Not thread-safe.
#pragma once

#include <cstdint>

namespace dovrel {

/// Selects MD5Random if `useMD5` is true, otherwise StdLibRandom. MD5Random is selected at the start.
/// Each keeps its own state.
void selectRandomSource(bool useMD5);

/// Restarts the selected source with the sequence for the seed `value`.
void seedRandom(uint32_t value);

/// Returns 0 or 1.
uint32_t nextRandomBit();

uint32_t nextRandom32();

/// Seeds the selected source with the calendar time in seconds.
void seedFromTime();

}  // namespace dovrel

// The random source of the process: one of the two BaseRandom sources. Each is made at its first use (which
// throws std::bad_alloc if memory runs out) and lives as long as the process, its exit handlers included. Not
// guarded, one thread at a time.
#pragma once

#include <cstdint>

namespace dovrel {

/// True selects MD5Random, which is also the first selection, false StdLibRandom. Each keeps its own state.
void selectRandomSource(bool useMD5);

/// Starts the selected source's sequence that belongs to `value`.
void seedRandom(uint32_t value);

/// 0 or 1.
uint32_t nextRandomBit();

uint32_t nextRandom32();

/// Seeds the selected source with the calendar time in seconds.
void seedFromTime();

}  // namespace dovrel

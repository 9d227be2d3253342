// Positions in an image's streams. On macOS a position holds a conversion state of 128 bytes, here one of 8;
// the stream buffers are the image's own code, so the calls between the two are made here, with the image's
// layout.
#pragma once

#include <cstdint>

namespace dovrel::macho {

/// std::fpos as an image has it.
struct PlatformPosition {
    char state[128];
    int64_t offset;
};

/// std::istream::tellg.
PlatformPosition platformTellg(void* stream);
/// std::istream::seekg, by a distance from the beginning (0), the current position (1) or the end (2).
void* platformSeekg(void* stream, int64_t distance, int from);

}  // namespace dovrel::macho

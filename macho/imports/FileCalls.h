// File functions whose flags or structures differ on macOS.
#pragma once

#include <cstdint>

namespace dovrel::macho {

/// A point in time in the layout of an image.
struct PlatformTime {
    long seconds;
    long nanoseconds;
};

/// A file's status in the layout of an image.
struct PlatformStatus {
    int32_t device;
    uint16_t mode;
    uint16_t links;
    uint64_t number;
    uint32_t user;
    uint32_t group;
    int32_t specialDevice;
    PlatformTime accessed;
    PlatformTime modified;
    PlatformTime changed;
    PlatformTime made;
    int64_t size;
    int64_t blocks;
    int32_t blockSize;
    uint32_t flags;
    uint32_t generation;
    int32_t unused;
    int64_t unusedToo[2];
};

static_assert(sizeof(PlatformStatus) == (sizeof(void*) == 8 ? 144 : 108));

/// open(2) with the flags of macOS.
int platformOpen(const char* path, int flags, ...);
int platformStat(const char* path, PlatformStatus* status);
int platformLstat(const char* path, PlatformStatus* status);
int platformFstat(int descriptor, PlatformStatus* status);

}  // namespace dovrel::macho

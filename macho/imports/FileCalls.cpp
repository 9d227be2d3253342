#include "macho/imports/FileCalls.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdarg>
#include <utility>

namespace dovrel::macho {

namespace {

constexpr int kAccessMask = 3;  // the same on both systems
constexpr int kCreate = 0x200;

constexpr std::pair<int, int> kFlags[] = {
    {0x4, O_NONBLOCK}, {0x8, O_APPEND}, {0x100, O_NOFOLLOW},    {kCreate, O_CREAT},
    {0x400, O_TRUNC},  {0x800, O_EXCL}, {0x1000000, O_CLOEXEC},
};

PlatformTime platformTime(const timespec& from) {
    return {static_cast<long>(from.tv_sec), static_cast<long>(from.tv_nsec)};
}

int filledIn(int result, const struct stat& from, PlatformStatus* status) {
    if (result != 0) return result;
    *status = PlatformStatus();
    status->device = static_cast<int32_t>(from.st_dev);
    status->mode = static_cast<uint16_t>(from.st_mode);
    status->links = static_cast<uint16_t>(from.st_nlink);
    status->number = from.st_ino;
    status->user = from.st_uid;
    status->group = from.st_gid;
    status->specialDevice = static_cast<int32_t>(from.st_rdev);
    status->accessed = platformTime(from.st_atim);
    status->modified = platformTime(from.st_mtim);
    status->changed = platformTime(from.st_ctim);
    status->size = from.st_size;
    status->blocks = from.st_blocks;
    status->blockSize = static_cast<int32_t>(from.st_blksize);
    return 0;
}

}  // namespace

int platformOpen(const char* path, int flags, ...) {
    int known = kAccessMask;
    int systemFlags = flags & kAccessMask;
    for (const auto& [there, here] : kFlags) {
        known |= there;
        if ((flags & there) != 0) systemFlags |= here;
    }
    if ((flags & ~known) != 0) {  // fails, because ignoring an unknown flag could be wrong
        errno = EINVAL;
        return -1;
    }
    int mode = 0;
    if ((flags & kCreate) != 0) {
        va_list arguments;
        va_start(arguments, flags);
        mode = va_arg(arguments, int);
        va_end(arguments);
    }
    return open(path, systemFlags, mode);
}

int platformStat(const char* path, PlatformStatus* status) {
    struct stat here;
    return filledIn(stat(path, &here), here, status);
}

int platformLstat(const char* path, PlatformStatus* status) {
    struct stat here;
    return filledIn(lstat(path, &here), here, status);
}

int platformFstat(int descriptor, PlatformStatus* status) {
    struct stat here;
    return filledIn(fstat(descriptor, &here), here, status);
}

}  // namespace dovrel::macho

#include "platform/files/FileWriting.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace dovrel {

namespace {

bool grow(int descriptor, off_t oldSize, const std::string& text) {
    const auto start = static_cast<size_t>(oldSize);
    if (writeAt(descriptor, text.data() + start, text.size() - start, oldSize)) return true;
    [[maybe_unused]] const int result = ftruncate(descriptor, oldSize);
    return false;
}

}  // namespace

bool isWithinSizeLimit(off_t size) {
    struct rlimit limit;
    if (getrlimit(RLIMIT_FSIZE, &limit) != 0 || static_cast<rlim_t>(size) <= limit.rlim_cur) return true;
    errno = EFBIG;
    return false;
}

bool appendAtOnce(int descriptor, const void* bytes, size_t size) {
    struct stat status;
    const bool isRegular = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    if (isRegular && !isWithinSizeLimit(status.st_size + static_cast<off_t>(size))) return false;
    ssize_t written = -1;
    do {
        written = write(descriptor, bytes, size);
    } while (written < 0 && errno == EINTR);
    return written >= 0 && static_cast<size_t>(written) == size;
}

bool writeAt(int descriptor, const char* bytes, size_t size, off_t offset) {
    if (size > 0 && !isWithinSizeLimit(offset + static_cast<off_t>(size))) return false;
    while (size > 0) {
        const ssize_t count = pwrite(descriptor, bytes, size, offset);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        bytes += count;
        size -= static_cast<size_t>(count);
        offset += count;
    }
    return true;
}

bool overwrite(int descriptor, off_t oldSize, const std::string& text) {
    const auto size = static_cast<off_t>(text.size());
    if (size > oldSize && !grow(descriptor, oldSize, text)) return false;
    const auto common = static_cast<size_t>(std::min(size, oldSize));
    if (!writeAt(descriptor, text.data(), common, 0)) return false;
    return size >= oldSize || ftruncate(descriptor, size) == 0;
}

}  // namespace dovrel

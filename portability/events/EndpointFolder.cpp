#include "events/EndpointFolder.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <cinttypes>
#include <cstdint>
#include <cstdio>

namespace portability {

namespace {

constexpr mode_t kOthersMask = 077;

// Where the folder is to be found: in an open folder, under a name.
struct Place {
    FileDescriptor parent;
    std::string name;
};

bool isOwnFolder(const FileDescriptor& folder) {
    struct stat status;
    return fstat(folder.get(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid();
}

FileDescriptor openRuntimeFolder() {
    const char* path = secure_getenv("XDG_RUNTIME_DIR");
    if (path == nullptr || path[0] != '/') return FileDescriptor();
    FileDescriptor folder(open(path, O_PATH | O_DIRECTORY | O_CLOEXEC));
    return folder && isOwnFolder(folder) ? std::move(folder) : FileDescriptor();
}

Place findPlace() {
    Place place{openRuntimeFolder(), "pos-events"};
    if (place.parent) return place;
    place.parent.reset(open("/tmp", O_PATH | O_DIRECTORY | O_CLOEXEC));
    place.name += "-" + std::to_string(geteuid());
    return place;
}

FileDescriptor openPlace(const Place& place) {
    FileDescriptor folder(
        openat(place.parent.get(), place.name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder) return folder;
    struct stat status;
    if (fstat(folder.get(), &status) != 0) return FileDescriptor();
    if (status.st_uid == geteuid() && (status.st_mode & kOthersMask) == 0) return folder;
    errno = EPERM;
    return FileDescriptor();
}

// FNV-1a. Nobody but the user can choose the roots, so nothing is gained by making two of them collide.
uint64_t numberOf(const std::string& text) {
    uint64_t number = 0xCBF29CE484222325;
    for (const char c : text) {
        number ^= static_cast<unsigned char>(c);
        number *= 0x100000001B3;
    }
    return number;
}

}  // namespace

FileDescriptor openEndpointFolder() {
    return openPlace(findPlace());
}

FileDescriptor makeEndpointFolder() {
    const Place place = findPlace();
    if (mkdirat(place.parent.get(), place.name.c_str(), 0700) != 0 && errno != EEXIST)
        return FileDescriptor();
    return openPlace(place);
}

std::string endpointName(const std::string& systemRoot, OSType signature) {
    char name[40];
    std::snprintf(name, sizeof name, "%016" PRIx64 "-%08" PRIx32, numberOf(systemRoot),
                  static_cast<uint32_t>(signature));
    return name;
}

std::string socketPath(const FileDescriptor& folder, const std::string& name) {
    return "/proc/self/fd/" + std::to_string(folder.get()) + "/" + name;
}

}  // namespace portability

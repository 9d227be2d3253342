#include "portability/transport/EndpointFolder.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <cinttypes>
#include <cstdint>
#include <cstdio>

namespace portability {

namespace {

constexpr mode_t kOwnerMask = 0700;
constexpr mode_t kOthersMask = 077;

// Returns whether the error means that this user has no file at the path. All other errors (too many open
// files, no memory, a damaged disk) do not say whether there is one.
bool isAbsence(int error) {
    return error == ENOENT || error == ENOTDIR || error == EACCES || error == ELOOP || error == ENAMETOOLONG;
}

// Returns whether the error means that this user cannot create a folder at the path.
bool isRefusal(int error) {
    return isAbsence(error) || error == EPERM || error == EROFS;
}

FolderState stateAfter(int error) {
    return isAbsence(error) ? FolderState::absent : FolderState::failed;
}

// Returns `path` in the system root if that exists, otherwise `path`.
std::string folderOfSystem(const std::string& systemRoot, const std::string& path) {
    const std::string own = systemRoot + path;
    struct stat status;
    if (systemRoot == "/" || (stat(own.c_str(), &status) != 0 && isAbsence(errno))) return path;
    return own;
}

FolderState openParent(const EndpointPlace& place, FileDescriptor& parent) {
    parent.reset(open(place.parent.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!parent) return stateAfter(errno);
    struct stat status;
    if (fstat(parent.get(), &status) != 0) return FolderState::failed;
    return place.isPrivate && status.st_uid != geteuid() ? FolderState::absent : FolderState::open;
}

// Returns the state if the name belongs to a file that is not a folder. If the file is another user's, other
// places may be used.
FolderState stateOfObstacle(const FileDescriptor& parent, const std::string& name) {
    struct stat status;
    if (fstatat(parent.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return stateAfter(errno);
    errno = ENOTDIR;
    return status.st_uid == geteuid() ? FolderState::failed : FolderState::absent;
}

FolderState openIn(const FileDescriptor& parent, const std::string& name, FileDescriptor& folder) {
    folder.reset(openat(parent.get(), name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder) return errno == ENOTDIR ? stateOfObstacle(parent, name) : stateAfter(errno);
    struct stat status;
    if (fstat(folder.get(), &status) != 0) return FolderState::failed;
    if (status.st_uid != geteuid()) return FolderState::absent;
    if ((status.st_mode & kOthersMask) != 0) {
        errno = EPERM;
        return FolderState::failed;
    }
    const bool isUsable = (status.st_mode & kOwnerMask) == kOwnerMask || setMode(folder, kOwnerMask);
    return isUsable ? FolderState::open : FolderState::failed;
}

FolderState makeFolder(const EndpointPlace& place, FileDescriptor& folder) {
    FileDescriptor parent;
    const FolderState state = openParent(place, parent);
    if (state != FolderState::open) return state;
    if (mkdirat(parent.get(), place.name.c_str(), kOwnerMask) != 0 && errno != EEXIST) {
        return isRefusal(errno) ? FolderState::absent : FolderState::failed;
    }
    return openIn(parent, place.name, folder);
}

// FNV-1a. A cryptographic hash is not needed: only the user chooses the roots, and two roots with the same
// hash harm only that user.
uint64_t computeHash(const std::string& text) {
    uint64_t number = 0xCBF29CE484222325;
    for (const char c : text) {
        number ^= static_cast<unsigned char>(c);
        number *= 0x100000001B3;
    }
    return number;
}

}  // namespace

std::vector<EndpointPlace> endpointPlaces(const std::string& systemRoot) {
    const std::string user = std::to_string(geteuid());
    const std::string name = "pos-events";
    std::vector<EndpointPlace> places;
    const char* runtimeFolder = secure_getenv("XDG_RUNTIME_DIR");
    const std::string userFolder = folderOfSystem(systemRoot, "/run/user") + '/' + user;
    const bool isGiven = runtimeFolder != nullptr && runtimeFolder[0] == '/' && runtimeFolder != userFolder;
    if (isGiven) places.push_back({runtimeFolder, name, true});
    places.push_back({userFolder, name, true});
    places.push_back({folderOfSystem(systemRoot, "/tmp"), name + '-' + user, false});
    return places;
}

FolderState openEndpointFolder(const EndpointPlace& place, FileDescriptor& folder) {
    FileDescriptor parent;
    const FolderState state = openParent(place, parent);
    return state == FolderState::open ? openIn(parent, place.name, folder) : state;
}

FileDescriptor makeEndpointFolder(const std::vector<EndpointPlace>& places) {
    FileDescriptor folder;
    for (auto place = places.rbegin(); place != places.rend(); ++place) {
        const FolderState state = makeFolder(*place, folder);
        if (state == FolderState::open) return folder;
        if (state == FolderState::failed) break;
    }
    return FileDescriptor();
}

std::string endpointName(const std::string& systemRoot, OSType signature) {
    char name[40];
    std::snprintf(name, sizeof name, "%016" PRIx64 "-%08" PRIx32, computeHash(systemRoot),
                  static_cast<uint32_t>(signature));
    return name;
}

std::string socketPath(const FileDescriptor& folder, const std::string& name) {
    return "/proc/self/fd/" + std::to_string(folder.get()) + "/" + name;
}

bool setMode(const FileDescriptor& file, mode_t mode) {
    return chmod(("/proc/self/fd/" + std::to_string(file.get())).c_str(), mode) == 0;
}

}  // namespace portability

#include "portability/transport/EndpointOwner.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <string>

#include "portability/posix/OpenFolder.h"
#include "portability/posix/SystemRoot.h"
#include "portability/transport/EndpointFolder.h"
#include "portability/transport/EndpointLock.h"

namespace portability {

namespace {

bool hasOpened(pid_t process, const struct stat& file) {
    const std::string descriptors = "/proc/" + std::to_string(process) + "/fd/";
    OpenFolder entries(descriptors);
    while (const dirent* entry = entries.next()) {
        struct stat opened;
        if (stat((descriptors + entry->d_name).c_str(), &opened) == 0 && opened.st_dev == file.st_dev &&
            opened.st_ino == file.st_ino) {
            return true;
        }
    }
    return false;
}

}  // namespace

bool isEndpointOwner(pid_t process, OSType signature) {
    const std::string root = systemRoot();
    const std::string name = endpointName(root, signature) + kLockExtension;
    for (const EndpointPlace& place : endpointPlaces(root)) {
        FileDescriptor folder;
        struct stat lock;
        if (openEndpointFolder(place, folder) != FolderState::open) continue;
        if (fstatat(folder.get(), name.c_str(), &lock, AT_SYMLINK_NOFOLLOW) != 0) continue;
        if (hasOpened(process, lock)) return true;
    }
    return false;
}

}  // namespace portability

#include "platform/files/PrivateFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/files/StandardStreamGuard.h"

namespace dovrel {

namespace {

// Another user, whose file this is or who has made a second name for it, could read what is written to it.
bool isOwn(const struct stat& status) {
    return S_ISREG(status.st_mode) && status.st_uid == geteuid() && status.st_nlink == 1;
}

}  // namespace

int openPrivateFile(const std::string& path) {
    const StandardStreamGuard guard;
    const int descriptor =
        open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
    struct stat status = {};
    if (descriptor >= 0 && fstat(descriptor, &status) == 0 && isOwn(status)) {
        // A host's umask may have taken away the owner's rights, and later sessions could not add to the file.
        if (status.st_size == 0) static_cast<void>(fchmod(descriptor, status.st_mode | 0600));
        return descriptor;
    }
    if (descriptor >= 0) close(descriptor);
    return -1;
}

}  // namespace dovrel

#include "platform/files/StandardStreamGuard.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace dovrel {

StandardStreamGuard::StandardStreamGuard() {
    for (;;) {
        // open() returns the lowest free number. If that is above 2, all three standard streams are open.
        const int descriptor = open("/dev/null", O_RDWR | O_CLOEXEC);
        if (descriptor < 0) return;
        if (descriptor >= kStandardStreams) {
            close(descriptor);
            return;
        }
        descriptors_[static_cast<size_t>(count_++)] = descriptor;
    }
}

StandardStreamGuard::~StandardStreamGuard() {
    const int error = errno;
    while (count_ > 0)
        close(descriptors_[static_cast<size_t>(--count_)]);
    errno = error;
}

}  // namespace dovrel

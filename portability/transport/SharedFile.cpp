#include "portability/transport/SharedFile.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include "portability/posix/FileSizeSignalBlock.h"

#ifndef MFD_NOEXEC_SEAL
#define MFD_NOEXEC_SEAL 0x0008U
#endif

namespace portability {

FileDescriptor makeSharedFile(size_t size) {
    int number = memfd_create("apple event", MFD_CLOEXEC | MFD_NOEXEC_SEAL | MFD_ALLOW_SEALING);
    // Kernels before 6.3 do not know MFD_NOEXEC_SEAL. Some later ones require it.
    if (number < 0 && errno == EINVAL) number = memfd_create("apple event", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    FileDescriptor file = aboveStandardStreams(number);
    if (!file) return file;
    // The memory is allocated here, where a failure can be reported. A failure at the first access would kill
    // the process.
    const FileSizeSignalBlock noSignal;
    int claimed;
    do
        claimed = fallocate(file.get(), 0, 0, static_cast<off_t>(size));
    while (claimed != 0 && errno == EINTR);
    if (claimed != 0) return FileDescriptor();
    if (fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0)
        return FileDescriptor();
    return file;
}

bool isSealedSharedFile(const FileDescriptor& file, uint64_t& size) {
    // Only shared-memory files have seals.
    const int seals = fcntl(file.get(), F_GET_SEALS);
    if (seals < 0 || (seals & F_SEAL_SHRINK) == 0) return false;
    struct stat status;
    if (fstat(file.get(), &status) != 0 || status.st_size < 0) return false;
    size = static_cast<uint64_t>(status.st_size);
    return true;
}

}  // namespace portability

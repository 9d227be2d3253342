// Creates shared-memory files as a peer might send them.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <stdexcept>

#include "Images.h"
#include "portability/posix/FileDescriptor.h"

/// Returns a file of that size with those seals and that content at its beginning.
inline portability::FileDescriptor memoryFile(size_t size, int seals, const Bytes& content = {}) {
    portability::FileDescriptor file(memfd_create("test", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    const bool made =
        ftruncate(file.get(), static_cast<off_t>(size)) == 0 &&
        pwrite(file.get(), content.data(), content.size(), 0) == static_cast<ssize_t>(content.size()) &&
        fcntl(file.get(), F_ADD_SEALS, seals) == 0;
    if (!made) throw std::runtime_error("no shared-memory file");
    return file;
}

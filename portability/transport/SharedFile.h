// Shared-memory files (memfd). Private to the layer.
#pragma once

#include <cstddef>
#include <cstdint>

#include "portability/posix/FileDescriptor.h"

namespace portability {

/// Creates a shared-memory file of `size` bytes whose size cannot change. All of its memory is allocated.
/// Returns an empty descriptor if memory or file descriptors run out, or if the process's limit of file sizes
/// (RLIMIT_FSIZE), which also holds for shared memory, is smaller. That brings no SIGXFSZ.
FileDescriptor makeSharedFile(size_t size);

/// Returns whether the file, which may come from any source, is shared memory that cannot shrink. (Access to
/// a mapping of a file that has shrunk would kill the process.) Sets `size` to the file's size in bytes if
/// the result is true.
bool isSealedSharedFile(const FileDescriptor& file, uint64_t& size);

}  // namespace portability

// Files that are nothing but memory which two processes share. Private to the layer.
#pragma once

#include <cstddef>
#include <cstdint>

#include "portability/posix/FileDescriptor.h"

namespace portability {

/// A shared-memory file of `size` bytes, all of them claimed from the system, that can neither shrink nor
/// grow. Empty when there is no memory or no descriptor left.
FileDescriptor makeSharedFile(size_t size);

/// Whether the file, from wherever it came, is shared memory that cannot shrink under a mapping, which would
/// kill whoever touches it. `size` gets its size.
bool isSealedSharedFile(const FileDescriptor& file, uint64_t& size);

}  // namespace portability

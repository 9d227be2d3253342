// Writes to an open file by its file descriptor.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>

namespace dovrel {

/// Returns whether the process may make a file so large, in bytes. If not, errno is EFBIG, and the caller must not
/// write: exceeding the limit (RLIMIT_FSIZE) brings SIGXFSZ, which by default ends the process. All functions of
/// this file ask it.
bool isWithinSizeLimit(off_t size);

/// Appends the bytes with one call of write(), so that the entries of several processes do not mix. The descriptor
/// was opened for appending, or is a stream. Continues after an interruption by a signal. Returns false if not all
/// bytes were written.
bool appendAtOnce(int descriptor, const void* bytes, size_t size);

/// Writes all bytes at the offset, which may be beyond the file's end. Continues after an interruption by a
/// signal. Returns false, with errno set, if not all bytes were written.
bool writeAt(int descriptor, const char* bytes, size_t size, off_t offset);

/// Replaces the content of a regular file of `oldSize` bytes by `text`, in place. The file grows first, so
/// it keeps its old content if there is no space for the new content. Space can still run out later only
/// on a file system that never writes a block in its old place (copy on write). Returns false if not all
/// of the content was written.
bool overwrite(int descriptor, off_t oldSize, const std::string& text);

}  // namespace dovrel

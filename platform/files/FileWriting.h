// Writing to an open file by its descriptor.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>

namespace dovrel {

/// Writes all bytes at the offset, which may lie beyond the file's end; goes on after an interruption. False
/// with errno set if they did not all arrive.
bool writeAt(int descriptor, const char* bytes, size_t size, off_t offset);

/// Gives a plain file of `oldSize` bytes the content `text`, in place. The file grows first, so that it keeps
/// its old content if there is no room for the new one; only a file system that never writes a block in its
/// old place can still run out of room later. False if the content did not arrive as a whole.
bool overwrite(int descriptor, off_t oldSize, const std::string& text);

}  // namespace dovrel

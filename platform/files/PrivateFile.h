// Opens files that only their owner may read.
#pragma once

#include <string>

namespace dovrel {

/// Opens the file for appending and creates it if necessary. Other files of the library are open to all users,
/// but such a file only to its owner, because it may contain what a host sends to its server. An existing file
/// keeps its permissions. Returns a descriptor above 2 that the caller closes, or -1 if the file cannot be
/// opened, is a symbolic link, is not a regular file, has several names, or belongs to another user. Never
/// blocks, even if the path names a pipe.
int openPrivateFile(const std::string& path);

}  // namespace dovrel

// The lock file of an endpoint. Private to the layer.
#pragma once

#include <string>

#include "portability/posix/FileDescriptor.h"

namespace portability {

/// The extension of the lock file's name.
constexpr char kLockExtension[] = ".lock";

enum class LockOutcome {
    locked,
    inUse,  ///< another open file description has the lock
    failed  ///< the file cannot be created, opened or locked, or is not this user's regular file; see errno
};

/// Locks the file `name` in the folder, and creates it if it does not exist. Never blocks. If the file's mode
/// denies access to the user (because of a host's umask), the mode is corrected. `lock` is set only if the
/// file was locked. The lock lasts until all descriptors of its open file description are closed.
LockOutcome lockFile(const FileDescriptor& folder, const std::string& name, FileDescriptor& lock);

/// Returns whether the file `name` in the folder is the same file as the open file `lock`.
bool isLockOf(const FileDescriptor& folder, const std::string& name, int lock);

/// Returns whether the open file can be an endpoint's lock: a regular file that belongs to this user.
bool isLockFile(int descriptor);

}  // namespace portability

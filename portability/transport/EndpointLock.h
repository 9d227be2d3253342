// The lock file beside an endpoint's socket. Private to the layer.
#pragma once

#include <string>

#include "portability/posix/FileDescriptor.h"

namespace portability {

enum class LockOutcome {
    locked,
    inUse,  ///< another open file description has the lock
    failed  ///< the file cannot be made, opened or locked, or is not a regular file of this user; errno tells
            ///< why
};

/// Locks the file `name` in the folder, which is made if it does not exist. Never waits. A mode that keeps
/// the user out (a host's umask did that) is corrected. The lock lasts as long as the open file description.
LockOutcome lockFile(const FileDescriptor& folder, const std::string& name, FileDescriptor& lock);

/// Whether the file `name` in the folder is the one that is open as `lock`.
bool isLockOf(const FileDescriptor& folder, const std::string& name, int lock);

/// Whether the open file can be an endpoint's lock: a regular file of this user.
bool isLockFile(int descriptor);

}  // namespace portability

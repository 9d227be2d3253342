// Where the library's log files lie on this system.
#pragma once

#include <string>

namespace dovrel {

/// The log folder's path for fopen() and its like, with a slash at its end. With `create` the folder is
/// created, open to all users, if it does not exist; the path is returned even if that fails.
std::string logFolderPath(bool create);

/// The path of the library's error log. Creates the log folder like logFolderPath(true), but not the file.
std::string errorLogPath();

}  // namespace dovrel

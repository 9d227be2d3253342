// The paths of the library's log folder and error log on this system.
#pragma once

#include <string>

namespace dovrel {

/// Returns the path of the log folder for `fopen` and other C library functions, with a slash at its end.
/// With `create`, a missing folder is created with all permissions for all users. The path is returned even
/// if the folder cannot be created.
std::string logFolderPath(bool create);

/// Returns the path of the library's error log. Creates the log folder as
/// logFolderPath(true) does, but not the file.
std::string errorLogPath();

}  // namespace dovrel

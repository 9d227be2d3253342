// Where the library's log files lie on this system.
#pragma once

#include <string>

namespace dovrel {

/// The log folder with a slash at its end, as the language's file calls take it. With `create` the folder is
/// made, open to all users, if it does not exist; whether that worked is not told.
std::string logFolderPath(bool create);

/// The library's error log, in the log folder, which is made if it does not exist.
std::string errorLogPath();

}  // namespace dovrel

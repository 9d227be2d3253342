// Finds the file of code that is loaded in this process. Private to the layer.
#pragma once

#include <string>

namespace portability {

/// Returns the path of the executable or library that contains `address`: absolute and without symbolic links,
/// also if it was loaded by a relative path and the process has left that folder. If the file has been deleted
/// or replaced since, " (deleted)" follows the path. Returns the empty string if no file is mapped there, or
/// if the list of mappings cannot be read. Thread-safe.
std::string findCodeFile(const void* address);

}  // namespace portability

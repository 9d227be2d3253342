// The library that the subcommands use, loaded at run time. So the tool also starts if no library is installed.
//
// LoadedLibrary.cpp defines the functions of dovrel/pos.h for this program. Each of them calls the function of the
// same name in the loaded library. Before loadLibrary they must not be called.
#pragma once

#include <string>

namespace dovrel::tools {

/// Returns the path of the installed bundle. It need not exist.
std::string installedBundlePath();

/// Loads the library of the bundle. The empty path means the installed bundle, or, if there is none, the library
/// that the system's loader finds by its name. Throws a ToolFailure if it cannot be loaded. A library that was
/// loaded stays until the end of the process. Not thread-safe.
void loadLibrary(const std::string& bundle);

}  // namespace dovrel::tools

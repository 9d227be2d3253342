// Checks the file of a library before it is loaded. Private to this folder.
#pragma once

#include <string>

namespace portability {

/// Returns whether the file is a library for this kind of process and contains all the bytes that the loader
/// maps. A file that was cut, for example by a full disk, would crash the process when it is loaded. Damage
/// inside the file is not noticed. Any thread.
bool isCompleteLibrary(const std::string& path);

}  // namespace portability

// Finds the user's home folder. Private to the layer.
#pragma once

#include <string>

namespace portability {

/// Returns the path of the home folder. This is HOME if it is an absolute path and the program does not run
/// with the rights of another user (set-user-ID). Otherwise it is the entry of the user database, or the
/// empty string if the user has no entry. Thread-safe.
std::string homeFolder();

}  // namespace portability

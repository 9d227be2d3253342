// Finds the folder for what programs record about themselves. Private to the layer.
#pragma once

#include <string>

namespace portability {

/// Returns the path of the folder "dovrel" below the user's state folder, which is XDG_STATE_HOME if it is an
/// absolute path and the program does not run with the rights of another user, else ".local/state" in the
/// home folder. Returns the empty string if the user has neither.
///
/// Creates the folder and its missing parents, so that only the user can enter the new folders. The path is
/// returned even if they cannot be created. Thread-safe.
std::string makeStateFolder();

}  // namespace portability

// Finds the platform's fixed places (/Library, /System, /Applications) on this system. Private to the layer.
#pragma once

#include <string>
#include <vector>

namespace portability {

/// Returns the folder that replaces the platform's "/". This is the canonical form of the absolute path in
/// POS_SYSTEM_ROOT. If the variable is unset, empty or a relative path, or if the program runs with the rights
/// of another user, it is the root that was chosen when the library was configured (DOVREL_SYSTEM_ROOT in
/// CMake), which is "/" unless a distribution has chosen another one.
///
/// The result has no trailing slash, except for "/" itself. The environment is read at each call, so a change
/// takes effect at once. Thread-safe.
std::string systemRoot();

/// Returns the path at which `path` is found on this system. Paths at or below a fixed place get the
/// system root as a prefix. All other paths are returned unchanged, including those that already have the
/// prefix. Thread-safe.
///
/// Below the configured root nobody but the administrator can write. So while that root is used, paths at or
/// below "/Library/Logs" are found in the user's state folder, which this function creates then, because the
/// platform always has a folder for logs. Without such a folder (no home) they get the prefix.
std::string inSystemRoot(const std::string& path);

/// Returns the paths of the platform's fixed places on this system, including those that do not
/// exist. Thread-safe.
std::vector<std::string> fixedPlaces();

/// Returns whether `path`, a canonical path on this system, is at or below a fixed place of the current
/// system root. Thread-safe.
bool isInFixedPlace(const std::string& path);

}  // namespace portability

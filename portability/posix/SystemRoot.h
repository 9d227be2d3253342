// Finds the platform's fixed places (/Library, /System, /Applications) on this system. Private to the layer.
#pragma once

#include <string>
#include <vector>

namespace portability {

/// Returns the folder that replaces the platform's "/". This is the canonical form of the absolute path in
/// POS_SYSTEM_ROOT. It is "/" if the variable is unset, empty or a relative path, or if the program runs with
/// the rights of another user.
///
/// The result has no trailing slash, except for "/" itself. The environment is read at each call, so a change
/// takes effect at once. Thread-safe.
std::string systemRoot();

/// Returns the path at which `path` is found on this system. Paths at or below a fixed place get the
/// system root as a prefix. All other paths are returned unchanged, including those that already have the
/// prefix. Thread-safe.
std::string inSystemRoot(const std::string& path);

/// Returns the paths of the platform's fixed places on this system, including those that do not
/// exist. Thread-safe.
std::vector<std::string> fixedPlaces();

/// Returns whether `path`, a canonical path on this system, is at or below a fixed place of the current
/// system root. Thread-safe.
bool isInFixedPlace(const std::string& path);

}  // namespace portability

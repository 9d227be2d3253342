// Where the platform's fixed places (/Library, /System, /Applications) lie on this system. Private to the
// layer.
#pragma once

#include <string>
#include <vector>

namespace portability {

/// The folder that stands for the platform's "/": the canonical form of the absolute path in POS_SYSTEM_ROOT,
/// "/" when the variable is unset, empty or relative, or when the program runs with another user's rights.
/// Without a trailing slash except for "/" itself. Read from the environment at each call, so a change takes
/// effect at once. Any thread.
std::string systemRoot();

/// The path under which `path` is found on this system: paths at or below a fixed place get the system root
/// in front, all others (a path that has the root in front already, too) come back unchanged. Any thread.
std::string inSystemRoot(const std::string& path);

/// The paths of the platform's fixed places on this system, whether they exist or not. Any thread.
std::vector<std::string> fixedPlaces();

/// Whether `path`, a canonical path on this system, lies at or below a fixed place of the current system
/// root. Any thread.
bool isInFixedPlace(const std::string& path);

}  // namespace portability

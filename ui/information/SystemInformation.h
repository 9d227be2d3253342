// The operating system's name and version, as the system report tells them.
//
// All texts are in UTF-8. What Foundation makes on the way is freed before a function returns. Any thread.
#pragma once

#include <optional>
#include <string>

namespace dovrel {

/// The value under `key` in the system's version property list, as "%@" formats it; nothing if there is no
/// such list or no such value in it.
std::optional<std::string> systemVersionValue(const std::string& key);

/// The system's name and its architecture: "Mac OS X (x86)". An absent name reads as the platform formats an
/// absent object.
std::string osNameText();

/// The system's version and its build: "10.6.8 (10K549)". Absent ones as above.
std::string osVersionText();

}  // namespace dovrel

// Questions about paths on this system. Private to the layer.
#pragma once

#include <string>

namespace portability {

/// Whether something is there, symbolic links followed.
bool isThere(const std::string& path);
bool isFolder(const std::string& path);

/// The path without symbolic links, "." and ".."; empty, with errno set, when nothing is there.
std::string canonicalPath(const std::string& path);

/// What stands before the last slash ("/" when nothing does), and what stands behind it.
std::string parentOf(const std::string& path);
std::string lastComponentOf(const std::string& path);

}  // namespace portability

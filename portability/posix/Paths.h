// Functions about file paths. Private to the layer.
#pragma once

#include <string>

namespace portability {

/// Returns whether `path` exists (isThere) and whether it is a folder (isFolder). Both follow symbolic links.
bool isThere(const std::string& path);
bool isFolder(const std::string& path);

/// Returns the absolute path without symbolic links, "." and "..". Returns the empty string, with errno set,
/// if nothing exists at `path`.
std::string canonicalPath(const std::string& path);

/// getParent returns the part before the last slash: "/" if that part is empty, and the empty string if
/// there is no slash. getLastComponent returns the part after the last slash, or the whole path if there is
/// no slash.
std::string getParent(const std::string& path);
std::string getLastComponent(const std::string& path);

}  // namespace portability

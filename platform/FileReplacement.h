// Writing a file such that its old content stays when the new one cannot be written as a whole.
#pragma once

#include <string>

namespace dovrel {

/// Creates the file or replaces its content by all bytes of `text`, as opening it with mode "w+b" and writing
/// does. False when it could not be opened or not everything arrived.
///
/// The new content of an existing file is written beside it and takes its place when it is complete; so on a
/// full disk, or when the process ends half-way, the file has its old content still. Only where the exchange
/// could be noticed, or is not allowed, is a file written in place: one of another user or group, one with
/// several names, one behind a symbolic link, one in a folder that may not be written, and what is no plain
/// file.
bool replaceFileContent(const std::string& path, const std::string& text);

}  // namespace dovrel

// Writes a file. If the new content cannot be written completely, the file keeps its old content.
#pragma once

#include <string>

namespace dovrel {

/// Creates the file or replaces its content by all bytes of `text`, as opening it with mode "w+b" and writing
/// does. Returns false, with errno set, if the file could not be opened or not all bytes were written.
///
/// The new content of an existing file is written to a second file in the same folder, named "PATH.new0" to
/// "PATH.new9". When it is complete, it is renamed to PATH. So the file keeps its old content if there is no
/// space for the new content, and also if the process ends before the renaming. In that case the second file
/// stays until the same user calls the function for the same path again. A user's own file with such a name
/// is never deleted; SuccessorFile.h says how the function distinguishes the two.
///
/// The file is written in place if it cannot be replaced, or if users could notice the replacement:
///   - The file has several names, an access control list, extended attributes, or another owner or group than
///     new files in its folder.
///   - The path is a symbolic link.
///   - The folder is not writable.
///   - The file is a mount point, or is on a file system that does not rename over existing files.
/// A file that is written in place also keeps its old content if there is no space for the new content, but
/// not if the process ends in the middle.
///
/// A file that did not exist before and cannot be written completely is removed.
///
/// Devices, pipes and other files that are not regular are opened and written.
bool replaceFileContent(const std::string& path, const std::string& text);

}  // namespace dovrel

// Writing a file such that its old content stays when the new one cannot be written as a whole.
#pragma once

#include <string>

namespace dovrel {

/// Creates the file or replaces its content by all bytes of `text`, as opening it with mode "w+b" and writing
/// does. False if it could not be opened or not everything arrived.
///
/// The new content of an existing file is written to a file beside it, named "PATH.new0" to "PATH.new9",
/// which takes its place when it is complete. So the file keeps its old content if there is no room for the
/// new one, and if the process ends half-way. If a process ends half-way, its new file stays; the next call of
/// the same user for the same path deletes it. Files of users that have such names stay; SuccessorFile.h says
/// how they are told apart.
///
/// A file is written in place if the exchange could be noticed or is refused:
///   - it has several names, an access control list, extended attributes, or another owner or group than new
///     files in its folder;
///   - the path is a symbolic link;
///   - its folder may not be written;
///   - it is a mount point, or lies on a share that does not exchange files.
/// Then it keeps its old content without room for the new one as well, but not if the process ends half-way.
/// Devices, pipes and the like are opened and written.
bool replaceFileContent(const std::string& path, const std::string& text);

}  // namespace dovrel

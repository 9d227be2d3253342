// Whole-file reading and writing, and what else the library does to files and folders.
//
// Paths are byte strings, absolute or relative. The calls of the language take their bytes as they are; the
// calls of the platform take them as UTF-8 where a folder is created and as Mac Roman everywhere else. A path
// outside ASCII can therefore name one file to the first kind of call and another, usually none, to the
// second.
//
// What the library creates is opened to all users of the machine. Failures are a false answer unless it says
// otherwise; no file stays open.
#pragma once

#include <string>

namespace dovrel {

/// The file's content up to its first NUL byte; with `normaliseLineEnds` every CR LF and every lone CR in it
/// becomes LF. Throws a new CPPException with the message "Could not open file for reading: " and the path
/// when there is no such file or it is a folder.
std::string readWholeFile(const std::string& path, bool normaliseLineEnds);

/// Creates the file or replaces its content by all bytes of `text`. False when not everything arrived; a file
/// that was there then keeps its old content where FileReplacement.h promises it.
bool writeWholeFile(const std::string& path, const std::string& text);

/// Copies a file by a shell command; an existing destination is replaced, unless `onlyIfMissing` is set and
/// it can be read. If the destination is a folder, the copy goes into it. False if nothing was tried: the
/// destination is to stay, or a path is null. True says nothing about the command's success. The copy is opened
/// to all users, also if the host ignores SIGCHLD.
bool copyFileWithShell(const char* source, const char* destination, bool onlyIfMissing);

/// False when the source cannot be read, the target can be read, or renaming failed.
bool renameIfTargetMissing(const std::string& source, const std::string& target);

/// Deletes a file, or an empty folder, by the call of the language.
bool removeFile(const std::string& path);

/// Deletes a file, or an empty folder, by the File Manager.
bool deleteFileObject(const std::string& path);

/// Whether the file can be opened for reading.
bool fileExists(const std::string& path);

/// Whether the File Manager knows a file or folder by that path, readable or not.
bool pathExists(const std::string& path);

/// Creates the last component of the path in the folder before it, which must exist. Slashes at the end do
/// not count. True also if the folder exists already (including "/", "." and ".."); it is then left as it is.
/// False for an empty path.
bool createFolder(const std::string& path);

/// Lets owner, group and others read, write and execute; no permission is taken away. True when that was
/// written, and also when the permissions cannot be read, in which case nothing is changed.
bool grantAllPermissions(const std::string& path);

}  // namespace dovrel

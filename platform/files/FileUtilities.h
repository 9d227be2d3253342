// Reads and writes whole files, and copies, renames, deletes and creates files and folders.
//
// Paths are byte strings, absolute or relative. C library functions such as `fopen` take the bytes unchanged.
// Functions of the platform take them as UTF-8 when a folder is created, and as Mac Roman in all other cases.
// A path with bytes outside ASCII can therefore name one file for the C library and another file (usually one
// that does not exist) for the platform.
//
// These functions grant all users all permissions on what they create. They return false on failure unless
// their comment says otherwise. No function leaves a file open.
#pragma once

#include <string>

namespace dovrel {

/// Returns the file's content up to its first NUL byte. With `normaliseLineEnds`, every CR LF and every CR
/// without LF in it becomes LF. Throws the exception of openForReading (OpenFile.h) if the file does not
/// exist, cannot be opened, is a folder, or cannot be sought (a pipe).
std::string readWholeFile(const std::string& path, bool normaliseLineEnds);

/// Creates the file or replaces its content by all bytes of `text`. Returns false if not all bytes were
/// written. An existing file then keeps its old content in the cases that FileReplacement.h names.
bool writeWholeFile(const std::string& path, const std::string& text);

/// Copies a file with the shell command `cp`. An existing destination is replaced, unless `onlyIfMissing` is
/// set and the destination can be read. If the destination is a folder, the copy goes into it. Returns false
/// if no copy was attempted: a path is null, or `onlyIfMissing` keeps the destination. True does not mean
/// that the command succeeded. All users get all permissions on the copy, even if the host ignores SIGCHLD.
bool copyFileWithShell(const char* source, const char* destination, bool onlyIfMissing);

/// Renames `source` to `target`. Returns false if the source cannot be read, if the target exists and can be
/// read, or if renaming fails.
bool renameIfTargetMissing(const std::string& source, const std::string& target);

/// Deletes a file or an empty folder with the C library's `remove`.
bool removeFile(const std::string& path);

/// Deletes a file or an empty folder with the File Manager.
bool deleteFileObject(const std::string& path);

/// Returns whether the file can be opened for reading.
bool fileExists(const std::string& path);

/// Returns whether the File Manager finds a file or folder at the path, even if it cannot be read.
bool pathExists(const std::string& path);

/// Creates the folder that the last component of the path names. Its parent folder must exist. Slashes at the
/// end of the path are ignored. Also returns true if the folder exists already (including "/", "." and "..");
/// it is then not changed. Returns false for an empty path.
bool createFolder(const std::string& path);

/// Adds read, write and execute permission for owner, group and others. No permission is removed.
/// Returns true if the permissions were written. Also returns true if they cannot be read;
/// nothing is changed in this case.
bool grantAllPermissions(const std::string& path);

}  // namespace dovrel

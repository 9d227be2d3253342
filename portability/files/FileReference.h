// What an FSRef holds: the identity of a file or folder and where it was found. Private to the layer.
//
// The identity is the device, the file's number on it and a mark that tells the file from an earlier one with
// the same number. An FSRef is never disposed of, so it can own nothing: its path stands in a table of this
// process, once for every path that was ever used.
#pragma once

#include <CoreServices/Files.h>

#include <string>

namespace portability {

/// Refers `ref` to what lies at `path`, a symbolic link itself included. `path` is absolute and, before its
/// last component, free of symbolic links. On failure `ref` stays as it is. Answers an errno value, 0 on
/// success.
int makeReference(const std::string& path, FSRef* ref);

/// Where the object lies now: where it was found, or under another name in the same folder. The result is
/// fnfErr when it is in neither place, errFSBadFSRef when `ref` was never set, paramErr when it is null;
/// `path` is then left alone.
OSErr resolveReference(const FSRef* ref, std::string& path);

/// Compares the identities alone, so that it works for objects that are gone: noErr, errFSRefsDifferent or
/// diffVolErr.
OSErr compareReferences(const FSRef* first, const FSRef* second);

}  // namespace portability

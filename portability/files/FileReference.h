// The content of an FSRef: the identity of a file or folder and the path at which it was found. Private to
// the layer.
//
// The identity consists of the device, the inode number, and a mark that distinguishes the file from earlier
// files with the same inode number. An FSRef is never disposed of, so it cannot own memory. Therefore its
// path is in a table of this process, which contains each path once and never removes any.
#pragma once

#include <CoreServices/Files.h>

#include <string>

namespace portability {

/// Makes `ref` refer to the object at `path`; a symbolic link is not followed. `path` must be absolute, and
/// no component before the last one may be a symbolic link. Returns 0 or an errno value; on failure `ref`
/// is unchanged.
int makeReference(const std::string& path, FSRef* ref);

/// Finds the current path of the object: its old path, or another name in the same folder. `path` is set only
/// if the result is noErr. Errors:
/// - paramErr: `ref` is null.
/// - errFSBadFSRef: `ref` was never set.
/// - fnfErr: the object is not in that folder.
/// - The error of the old path if it cannot be examined (FileErrors.h), for example afpAccessDenied.
OSErr resolveReference(const FSRef* ref, std::string& path);

/// Compares only the identities, so it also works for deleted objects. Returns noErr, errFSRefsDifferent
/// or diffVolErr.
OSErr compareReferences(const FSRef* first, const FSRef* second);

}  // namespace portability

// Finds and creates the user's folders for endpoints. Private to the layer.
//
// The hosts of one user run in different environments. A desktop session has XDG_RUNTIME_DIR, cron does not
// set it, and after su it can be another user's. /run/user/UID exists only while the user is logged in.
//
// Therefore new endpoints are created in /tmp/pos-events-UID, which all hosts of the user can always reach.
// One of the other folders is used only if that folder cannot be created (for example because another user
// has created a file with that name). Endpoints are looked up in all of these folders.
#pragma once

#include <CoreServices/MacTypes.h>
#include <sys/types.h>

#include <string>
#include <vector>

#include "portability/posix/FileDescriptor.h"

namespace portability {

/// A possible location of a folder for endpoints.
struct EndpointPlace {
    std::string parent;  ///< absolute path
    std::string name;    ///< the folder's name in the parent
    bool isPrivate;      ///< true: the parent must belong to this user
};

/// Returns the places in the order in which endpoints are looked up:
/// - "pos-events" in $XDG_RUNTIME_DIR, if that is an absolute path
/// - "pos-events" in /run/user/UID
/// - "pos-events-UID" in /tmp
///
/// If the system root contains a folder /run/user or /tmp, that folder is used instead of the system's.
std::vector<EndpointPlace> endpointPlaces(const std::string& systemRoot);

enum class FolderState {
    open,
    absent,  ///< does not exist, is another user's, or cannot be reached; other places may be used
    failed   ///< any other error; no other place may be used instead; errno has the reason
};

/// Opens the folder at the place. It must be a real folder (not a symbolic link), belong to this user, and
/// give no access to others. If its mode also denies access to the user (because of a host's umask), the mode
/// is corrected.
FolderState openEndpointFolder(const EndpointPlace& place, FileDescriptor& folder);

/// Opens or creates the folder for new endpoints, at the last of the places where this is possible. Its mode
/// is 0700, independent of the umask. Returns an empty descriptor, with errno set, on failure.
FileDescriptor makeEndpointFolder(const std::vector<EndpointPlace>& places);

/// Returns the name of the endpoint's files without their extensions: a hash of the system root, and
/// the signature.
std::string endpointName(const std::string& systemRoot, OSType signature);

/// Returns a path of the socket `name` in the folder that is short enough for a socket address, even if the
/// folder's own path is not. The path is valid while `folder` is open.
std::string socketPath(const FileDescriptor& folder, const std::string& name);

/// Sets the mode of an open file or folder, even if it was opened with O_PATH. Returns false, with errno set,
/// on failure.
bool setMode(const FileDescriptor& file, mode_t mode);

}  // namespace portability

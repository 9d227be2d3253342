// The folders of the user's own in which endpoints lie. Private to the layer.
//
// The hosts of one user run in different environments: a desktop session has XDG_RUNTIME_DIR, cron has not,
// and after su it is somebody else's. /run/user/UID exists only while the user is logged in. So a new
// endpoint lies in /tmp/pos-events-UID, which all of them reach at any time. Only if that folder cannot be
// had (another user has made something of that name, say) does it lie in one of the others. Endpoints are
// looked for in all of them.
#pragma once

#include <CoreServices/MacTypes.h>
#include <sys/types.h>

#include <string>
#include <vector>

#include "portability/posix/FileDescriptor.h"

namespace portability {

/// Where a folder for endpoints can be.
struct EndpointPlace {
    std::string parent;  ///< absolute path
    std::string name;    ///< of the folder in it
    bool isPrivate;      ///< the parent has to be this user's
};

/// The places in the order in which endpoints are looked for: "pos-events" in $XDG_RUNTIME_DIR (if that is an
/// absolute path) and in /run/user/UID, and "pos-events-UID" in /tmp. If the system root has a folder
/// /run/user or /tmp of its own, that takes the place of the system's.
std::vector<EndpointPlace> endpointPlaces(const std::string& systemRoot);

enum class FolderState {
    open,
    absent,  ///< it does not exist, is another user's or cannot be reached: endpoints may lie elsewhere
    failed   ///< anything else: no other place may be used instead; errno tells why
};

/// Opens the folder at the place if it is a real folder, no symbolic link, that belongs to this user and lets
/// nobody else in. If its mode keeps the user out as well (a host's umask did that), the mode is corrected.
FolderState openEndpointFolder(const EndpointPlace& place, FileDescriptor& folder);

/// The folder for new endpoints: at the last of the places where it exists or can be made. Its mode is 0700,
/// whatever the umask. Empty, with errno set, on failure.
FileDescriptor makeEndpointFolder(const std::vector<EndpointPlace>& places);

/// The name of the endpoint's files without their endings: a number for the system root and the signature.
std::string endpointName(const std::string& systemRoot, OSType signature);

/// A path for a socket `name` in the folder that fits into a socket address however long the folder's own
/// path is. Valid as long as the descriptor is open.
std::string socketPath(const FileDescriptor& folder, const std::string& name);

/// Gives an open file or folder that mode, whatever it was opened for (O_PATH included). False, with errno
/// set, on failure.
bool setMode(const FileDescriptor& file, mode_t mode);

}  // namespace portability

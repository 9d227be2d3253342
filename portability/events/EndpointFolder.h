// The folder of the user's own in which endpoints lie. Private to the layer.
#pragma once

#include <CoreServices/MacTypes.h>

#include <string>

#include "events/FileDescriptor.h"

namespace portability {

/// The folder: "pos-events" in $XDG_RUNTIME_DIR if that is a folder of this user, else "/tmp/pos-events-" and
/// the user id. Empty, with errno set, unless it is a real folder, no symbolic link, that belongs to this
/// user and lets nobody else in.
FileDescriptor openEndpointFolder();

/// The same, made first where it is missing.
FileDescriptor makeEndpointFolder();

/// The name of the endpoint's files without their endings: a number for the system root and the signature.
std::string endpointName(const std::string& systemRoot, OSType signature);

/// A path for a socket `name` in the folder that fits into a socket address however long the folder's own
/// path is. Valid as long as the descriptor is open.
std::string socketPath(const FileDescriptor& folder, const std::string& name);

}  // namespace portability

// Which process has an endpoint. Private to the layer.
#pragma once

#include <CoreServices/MacTypes.h>
#include <sys/types.h>

namespace portability {

/// Returns whether the process has the endpoint of `signature` under the current system root: it has opened
/// the endpoint's lock file, and the file still exists. A process that was launched has the endpoint from its
/// first instruction on. A process that is ending loses it when it withdraws its files, which may be long
/// before its end. Also returns false if the process cannot be inspected.
bool isEndpointOwner(pid_t process, OSType signature);

}  // namespace portability

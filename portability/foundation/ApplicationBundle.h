// An application as Launch Services sees it. Private to the layer.
#pragma once

#include <CoreServices/MacTypes.h>

#include <string>

namespace portability {

/// What has to be known to start an application.
struct ApplicationBundle {
    std::string path;        ///< of the bundle, canonical
    std::string executable;  ///< canonical
    OSType signature = 0;    ///< the creator under which it receives Apple events; 0 when it has none
};

/// Reads the bundle at `path`, from the disk, each time. noErr, or why it cannot be started: fnfErr when
/// nothing is there, kLSNotAnApplicationErr when it is something else, kLSNoExecutableErr when its program is
/// missing.
OSStatus readApplication(const std::string& path, ApplicationBundle& application);

}  // namespace portability

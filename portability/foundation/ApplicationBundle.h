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

/// Whether the application at `path` has `program` as its executable. `program` is a canonical path; its file
/// may be gone by now. Reads the bundle from the disk each time. False if it is not an application.
bool isExecutableOf(const std::string& path, const std::string& program);

/// The name of an application by the path of its bundle: "Name" for ".../Name.app". Empty if the path does
/// not end like that.
std::string applicationName(const std::string& path);

}  // namespace portability

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

/// Whether `program` is the executable of the application in `bundle`, both canonical paths. The program's
/// file may have been deleted. Reads the Info.plist from the disk each time; if that names no executable, it
/// is the one that is called like the application.
bool isExecutableOf(const std::string& bundle, const std::string& program);

/// The signature of the application in `bundle`; 0 if it has none or its Info.plist cannot be read. Reads that
/// from the disk each time.
OSType signatureOf(const std::string& bundle);

/// The name of an application by the path of its bundle: "Name" for ".../Name.app". Empty if the path does
/// not end like that.
std::string applicationName(const std::string& path);

}  // namespace portability

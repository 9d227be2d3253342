// Reads the properties of an application that Launch Services needs. Private to the layer.
#pragma once

#include <CoreServices/MacTypes.h>

#include <string>

namespace portability {

/// The properties that are necessary to launch an application.
struct ApplicationBundle {
    std::string path;        ///< canonical path of the bundle
    std::string executable;  ///< canonical path of the executable
    OSType signature = 0;    ///< creator signature under which it receives Apple events, or 0
};

/// Reads the bundle at `path` from the disk at each call. Returns noErr, or the reason why it cannot
/// be launched:
/// - fnfErr: nothing exists at the path.
/// - kLSNotAnApplicationErr: the path is not an application.
/// - kLSNoExecutableErr: the application's executable is missing.
OSStatus readApplication(const std::string& path, ApplicationBundle& application);

/// Returns whether `program` is the executable of the application in `bundle`. Both are canonical paths; the
/// program's file may have been deleted. Reads the Info.plist from the disk at each call. If it names no
/// executable, the executable has the application's name.
bool isExecutableOf(const std::string& bundle, const std::string& program);

/// Returns the signature of the application in `bundle`, or 0 if it has none or its Info.plist cannot be read.
/// Reads the Info.plist from the disk at each call.
OSType readSignature(const std::string& bundle);

/// Returns the name of an application from the path of its bundle: "Name" for ".../Name.app". Returns the
/// empty string if the path does not have this form.
std::string applicationName(const std::string& path);

}  // namespace portability

// The creator signature of this application. Private to the layer.
#pragma once

#include <CoreServices/MacTypes.h>

namespace portability {

/// Reads CFBundleSignature of the main bundle; false when there is none of four characters.
bool readOwnSignature(OSType& signature);

/// Whether the main bundle lies in a fixed place of the current system root. A copy of an application
/// elsewhere bears the same signature, and must not take its place.
bool isInstalled();

}  // namespace portability

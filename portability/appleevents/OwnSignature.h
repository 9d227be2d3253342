// Reads the creator signature of this application. Private to the layer.
#pragma once

#include <CoreServices/MacTypes.h>

namespace portability {

/// Reads CFBundleSignature of the main bundle. Returns false if it is missing or does not have
/// four characters.
bool readOwnSignature(OSType& signature);

/// Returns whether the main bundle is in a fixed place of the current system root. A copy of the application
/// at another place has the same signature and must not claim its endpoint.
bool isInstalled();

}  // namespace portability

// The creator signature of this application. Private to the layer.
#pragma once

#include <CoreServices/MacTypes.h>

namespace portability {

/// Reads CFBundleSignature of the main bundle; false when there is none of four characters.
bool readOwnSignature(OSType& signature);

}  // namespace portability

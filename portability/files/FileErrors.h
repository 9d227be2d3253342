// Converts errno values to results of the File Manager. Private to the layer.
#pragma once

#include <CoreServices/MacTypes.h>

namespace portability {

/// Returns the result for an errno value, for functions that return OSErr. Returns ioErr for values without a
/// code of their own.
OSErr fileError(int systemError);

/// The same for functions that return OSStatus, which can represent every value. Returns kPOSIXErrorBase +
/// errno for values without a code of their own.
OSStatus fileStatus(int systemError);

}  // namespace portability

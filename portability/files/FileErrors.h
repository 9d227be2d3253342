// The system's error numbers as results of the File Manager. Private to the layer.
#pragma once

#include <CoreServices/MacTypes.h>

namespace portability {

/// The result for an errno value, for calls that return an OSErr; ioErr for a cause that has no code of its
/// own.
OSErr fileError(int systemError);

/// The same for calls that return an OSStatus, which can carry every cause: kPOSIXErrorBase + errno without
/// its own code.
OSStatus fileStatus(int systemError);

}  // namespace portability

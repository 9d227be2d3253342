// Makes a Core Foundation URL from a path given as bytes.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

#include "platform/CFObject.h"

namespace dovrel {

/// Returns the URL of a file or folder, which need not exist. Returns an empty object if the path is empty or
/// its bytes are not valid in `encoding`. Any thread.
CFObject<CFURLRef> fileURL(const std::string& path, CFStringEncoding encoding);

}  // namespace dovrel

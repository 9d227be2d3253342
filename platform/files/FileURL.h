// The platform's address of a path given as bytes.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

#include "platform/CFObject.h"

namespace dovrel {

/// The URL of a file or folder, existing or not; empty when the path is empty or its bytes are not valid in
/// `encoding`. Any thread.
CFObject<CFURLRef> fileURL(const std::string& path, CFStringEncoding encoding);

}  // namespace dovrel

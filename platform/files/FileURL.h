// Makes Core Foundation URLs of files and folders, which need not exist. Every function returns an empty object
// if the URL cannot be made. Any thread.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

#include "platform/CFObject.h"

namespace dovrel {

/// Returns the URL of a file or folder, or null if the path is empty or its bytes are not valid in `encoding`.
CFObject<CFURLRef> fileURL(const std::string& path, CFStringEncoding encoding);

/// As fileURL, for a folder whose path is in UTF-8.
CFObject<CFURLRef> folderURL(const std::string& path);

/// Return the URL of the file or folder `name` (UTF-8) in a folder, or null if `folder` is null.
CFObject<CFURLRef> fileURLInFolder(const CFObject<CFURLRef>& folder, const char* name);
CFObject<CFURLRef> folderURLInFolder(const CFObject<CFURLRef>& folder, const char* name);

}  // namespace dovrel

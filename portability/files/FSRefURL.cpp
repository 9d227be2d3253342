#include <CoreFoundation/CFURL.h>
#include <CoreServices/Files.h>
#include <limits.h>

#include <array>
#include <cstring>
#include <string>

#include "portability/corefoundation/FileURL.h"

Boolean CFURLGetFSRef(CFURLRef url, FSRef* fsRef) {
    if (!portability::isFileURL(url)) {
        return false;
    }
    const std::string path = portability::toPath(url);
    return FSPathMakeRef(reinterpret_cast<const UInt8*>(path.c_str()), fsRef, nullptr) == noErr;
}

CFURLRef CFURLCreateFromFSRef(CFAllocatorRef allocator, const FSRef* fsRef) {
    std::array<UInt8, PATH_MAX> path;
    FSCatalogInfo info;
    if (FSRefMakePath(fsRef, path.data(), static_cast<UInt32>(path.size())) != noErr ||
        FSGetCatalogInfo(fsRef, kFSCatInfoNodeFlags, &info, nullptr, nullptr, nullptr) != noErr) {
        return nullptr;
    }
    return CFURLCreateFromFileSystemRepresentation(
        allocator, path.data(), static_cast<CFIndex>(std::strlen(reinterpret_cast<const char*>(path.data()))),
        (info.nodeFlags & kFSNodeIsDirectoryMask) != 0);
}

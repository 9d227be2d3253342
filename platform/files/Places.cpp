#include "platform/files/Places.h"

#include <limits.h>

#include "platform/files/FileURL.h"
#include "platform/files/FileUtilities.h"

namespace dovrel {

std::string fileSystemPath(const std::string& platformPath) {
    const CFObject<CFURLRef> url = fileURL(platformPath, kCFStringEncodingUTF8);
    UInt8 buffer[PATH_MAX];
    if (!url || !CFURLGetFileSystemRepresentation(url.get(), true, buffer, sizeof buffer))
        return platformPath;
    std::string path = reinterpret_cast<const char*>(buffer);
    // The URL does not keep a slash at the end.
    if (platformPath.back() == '/' && path.back() != '/') path += '/';
    return path;
}

std::string logFolderPath(bool create) {
    const std::string folder = fileSystemPath(places::kLogFolder);
    if (create && !pathExists(folder)) createFolder(folder);
    return folder;
}

std::string errorLogPath() {
    return logFolderPath(true) + places::kErrorLogName;
}

}  // namespace dovrel

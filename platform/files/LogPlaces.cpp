#include "platform/files/LogPlaces.h"

#include "platform/files/FileUtilities.h"
#include "platform/files/Places.h"

namespace dovrel {

std::string logFolderPath(bool create) {
    const std::string folder = fileSystemPath(places::kLogFolder);
    if (create && !pathExists(folder)) createFolder(folder);
    return folder;
}

std::string errorLogPath() {
    return logFolderPath(true) + places::kErrorLogName;
}

}  // namespace dovrel

#include <CoreServices/Folders.h>
#include <CoreServices/MacErrors.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <optional>
#include <string>

#include "portability/files/FileErrors.h"
#include "portability/posix/HomeFolder.h"
#include "portability/posix/Paths.h"
#include "portability/posix/SystemRoot.h"

namespace {

std::optional<std::string> findLibraryFolder(FSVolumeRefNum domain) {
    switch (domain) {
        case kLocalDomain:
            return "/Library";
        case kSystemDomain:
            return "/System/Library";
        case kUserDomain:
            return portability::homeFolder() + "/Library";
        default:
            return std::nullopt;
    }
}

std::string temporaryFolder() {
    const char* folder = secure_getenv("TMPDIR");
    return folder != nullptr && folder[0] == '/' ? folder : "/tmp";
}

// Returns the path for a folder type, or the empty string if the type is unknown.
std::string findTypePath(OSType type, const std::string& library) {
    switch (type) {
        case kDomainLibraryFolderType:
            return library;
        case kApplicationSupportFolderType:
            return library + "/Application Support";
        case kPreferencesFolderType:
            return library + "/Preferences";
        case kCurrentUserFolderType:
            return portability::homeFolder();
        case kTemporaryFolderType:
        case kChewableItemsFolderType:
            return temporaryFolder();
        default:
            return std::string();
    }
}

// Creates the folder and its missing parents. Returns 0 or an errno value.
int makeFolders(const std::string& path) {
    if (portability::isFolder(path) || path == "/") {
        return 0;
    }
    const int failure = makeFolders(portability::getParent(path));
    if (failure != 0) {
        return failure;
    }
    return mkdir(path.c_str(), ACCESSPERMS) == 0 || errno == EEXIST ? 0 : errno;
}

}  // namespace

OSErr FSFindFolder(FSVolumeRefNum vRefNum, OSType folderType, Boolean createFolder, FSRef* foundRef) {
    if (foundRef == nullptr) {
        return paramErr;
    }
    const auto library = findLibraryFolder(vRefNum);
    if (!library) {
        return nsvErr;
    }
    const std::string path = portability::inSystemRoot(findTypePath(folderType, *library));
    if (path.empty()) {
        return fnfErr;
    }
    const int failure = createFolder ? makeFolders(path) : 0;
    if (failure != 0) {
        return portability::fileError(failure);
    }
    FSRef found;
    Boolean isDirectory = false;
    const OSStatus result = FSPathMakeRef(reinterpret_cast<const UInt8*>(path.c_str()), &found, &isDirectory);
    if (result > kPOSIXErrorBase) {
        return ioErr;
    }
    if (result != noErr) {
        return static_cast<OSErr>(result);
    }
    if (!isDirectory) {
        return errFSNotAFolder;
    }
    *foundRef = found;
    return noErr;
}

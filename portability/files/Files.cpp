#include <CoreServices/Files.h>
#include <CoreServices/MacErrors.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "portability/files/CatalogInfo.h"
#include "portability/files/FileErrors.h"
#include "portability/files/FileNames.h"
#include "portability/files/FileReference.h"
#include "portability/posix/Paths.h"
#include "portability/posix/SystemRoot.h"

namespace {

constexpr FSCatalogInfoBitmap kReadable =
    kFSCatInfoGettableInfo | kFSCatInfoUserAccess | kFSCatInfoFSFileSecurityRef;
constexpr FSCatalogInfoBitmap kWritable = kFSCatInfoSettableInfo | kFSCatInfoSetOwnership;

OSErr checkInfo(FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* info, FSCatalogInfoBitmap allowed) {
    if ((whichInfo & ~allowed) != 0) {
        return errFSBadInfoBitmap;
    }
    if (whichInfo != kFSCatInfoNone && info == nullptr) {
        return paramErr;
    }
    return noErr;
}

// Returns the path of an existing or new object with this name in the folder.
OSErr pathInFolder(const FSRef* parent, UniCharCount length, const UniChar* name, std::string& path) {
    std::string folder;
    OSErr result = portability::resolveReference(parent, folder);
    if (result != noErr) {
        return result;
    }
    if (!portability::isFolder(folder)) {
        return errFSNotAFolder;
    }
    std::string file;
    result = portability::fileName(length, name, file);
    if (result == noErr) {
        path = (folder == "/" ? folder : folder + '/') + file;
    }
    return result;
}

bool isLocked(const std::string& path) {
    FSCatalogInfo info;
    return portability::readCatalogInfo(path, kFSCatInfoNodeFlags, info) == 0 &&
           (info.nodeFlags & kFSNodeLockedMask) != 0;
}

OSErr deletionError(const std::string& path, int systemError) {
    if (systemError == EPERM && isLocked(path)) {
        return fLckdErr;
    }
    // Some file systems report EEXIST for a folder that is not empty.
    return portability::fileError(systemError == EEXIST ? ENOTEMPTY : systemError);
}

OSErr deleteObject(const FSRef* ref) {
    std::string path;
    const OSErr result = portability::resolveReference(ref, path);
    if (result != noErr) {
        return result;
    }
    struct stat status;
    const bool isDirectory = lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    const int deleted = isDirectory ? rmdir(path.c_str()) : unlink(path.c_str());
    if (deleted != 0) {
        return deletionError(path, errno);
    }
    return noErr;
}

// Makes `parent` refer to the parent folder. The platform's root has no parent; `parent` is then left unset.
void referToParent(const std::string& path, FSRef* parent) {
    std::memset(parent->hidden, 0, sizeof parent->hidden);
    if (path != "/") {
        portability::makeReference(portability::getParent(path), parent);
    }
}

}  // namespace

OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory) {
    if (path == nullptr || ref == nullptr) {
        return paramErr;
    }
    const std::string given(path, path + std::strlen(reinterpret_cast<const char*>(path)));
    if (given.empty() || given.front() != '/') {
        return nsvErr;
    }
    const std::string canonical = portability::canonicalPath(portability::inSystemRoot(given));
    const int failure = canonical.empty() ? errno : portability::makeReference(canonical, ref);
    if (failure == 0 && isDirectory != nullptr) {
        *isDirectory = portability::isFolder(canonical);
    }
    return portability::fileStatus(failure);
}

OSStatus FSRefMakePath(const FSRef* ref, UInt8* path, UInt32 pathBufferSize) {
    if (path == nullptr) {
        return paramErr;
    }
    std::string found;
    const OSErr result = portability::resolveReference(ref, found);
    if (result != noErr) {
        return result;
    }
    if (found.size() >= pathBufferSize) {
        return pathTooLongErr;
    }
    std::memcpy(path, found.c_str(), found.size() + 1);
    return noErr;
}

OSErr FSMakeFSRefUnicode(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name, TextEncoding,
                         FSRef* newRef) {
    if (newRef == nullptr) {
        return paramErr;
    }
    std::string path;
    const OSErr result = pathInFolder(parentRef, nameLength, name, path);
    if (result != noErr) {
        return result;
    }
    return portability::fileError(portability::makeReference(path, newRef));
}

OSErr FSCreateDirectoryUnicode(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name,
                               FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* catalogInfo, FSRef* newRef,
                               FSSpecPtr, UInt32* newDirID) {
    std::string path;
    OSErr result = checkInfo(whichInfo, catalogInfo, kWritable);
    if (result == noErr) {
        result = pathInFolder(parentRef, nameLength, name, path);
    }
    if (result != noErr) {
        return result;
    }
    if (mkdir(path.c_str(), ACCESSPERMS) != 0) {
        return portability::fileError(errno);
    }
    FSRef made;
    FSCatalogInfo info;
    int failure =
        whichInfo == kFSCatInfoNone ? 0 : portability::writeCatalogInfo(path, whichInfo, *catalogInfo);
    if (failure == 0) {
        failure = portability::makeReference(path, &made);
    }
    if (failure == 0) {
        failure = portability::readCatalogInfo(path, kFSCatInfoNodeID, info);
    }
    if (failure != 0) {
        rmdir(path.c_str());
        return portability::fileError(failure);
    }
    if (newRef != nullptr) {
        *newRef = made;
    }
    if (newDirID != nullptr) {
        *newDirID = info.nodeID;
    }
    return noErr;
}

OSErr FSGetCatalogInfo(const FSRef* ref, FSCatalogInfoBitmap whichInfo, FSCatalogInfo* catalogInfo,
                       HFSUniStr255* outName, FSSpecPtr, FSRef* parentRef) {
    std::string path;
    OSErr result = checkInfo(whichInfo, catalogInfo, kReadable);
    if (result == noErr) {
        result = portability::resolveReference(ref, path);
    }
    if (result == noErr && whichInfo != kFSCatInfoNone) {
        result = portability::fileError(portability::readCatalogInfo(path, whichInfo, *catalogInfo));
    }
    if (result != noErr) {
        return result;
    }
    if (outName != nullptr) {
        portability::unicodeName(portability::getLastComponent(path), *outName);
    }
    if (parentRef != nullptr) {
        referToParent(path, parentRef);
    }
    return noErr;
}

OSErr FSSetCatalogInfo(const FSRef* ref, FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* catalogInfo) {
    std::string path;
    OSErr result = checkInfo(whichInfo, catalogInfo, kWritable);
    if (result == noErr) {
        result = portability::resolveReference(ref, path);
    }
    if (result != noErr || whichInfo == kFSCatInfoNone) {
        return result;
    }
    return portability::fileError(portability::writeCatalogInfo(path, whichInfo, *catalogInfo));
}

OSErr FSDeleteObject(const FSRef* ref) {
    return deleteObject(ref);
}

OSErr FSUnlinkObject(const FSRef* ref) {
    return deleteObject(ref);
}

OSErr FSCompareFSRefs(const FSRef* ref1, const FSRef* ref2) {
    return portability::compareReferences(ref1, ref2);
}

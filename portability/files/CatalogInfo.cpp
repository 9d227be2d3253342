#include "portability/files/CatalogInfo.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "portability/posix/OpenFolder.h"
#include "portability/posix/Paths.h"

namespace portability {
namespace {

// Seconds from 1904, the start of the platform's dates, to 1970.
constexpr SInt64 kSecondsTo1970 = 2082844800;
constexpr SInt64 kNanosecondsPerSecond = 1000000000;
constexpr SInt64 kFractionsPerSecond = 65536;
constexpr UInt16 kModeBits = 07777;

UTCDateTime platformDate(const struct statx_timestamp& time) {
    const auto seconds = static_cast<UInt64>(time.tv_sec + kSecondsTo1970);
    UTCDateTime date;
    date.highSeconds = static_cast<UInt16>(seconds >> 32);
    date.lowSeconds = static_cast<UInt32>(seconds & 0xFFFFFFFF);
    date.fraction = static_cast<UInt16>(time.tv_nsec * kFractionsPerSecond / kNanosecondsPerSecond);
    return date;
}

struct timespec systemTime(const UTCDateTime& date) {
    const UInt64 seconds = (static_cast<UInt64>(date.highSeconds) << 32) | date.lowSeconds;
    struct timespec time = {};
    time.tv_sec = static_cast<time_t>(static_cast<SInt64>(seconds) - kSecondsTo1970);
    time.tv_nsec = static_cast<long>(date.fraction * kNanosecondsPerSecond / kFractionsPerSecond);
    return time;
}

UInt8 userAccess(const std::string& path) {
    UInt8 access = 0;
    for (const int right : {R_OK, W_OK, X_OK}) {
        if (faccessat(AT_FDCWD, path.c_str(), right, AT_EACCESS) == 0) {
            access = static_cast<UInt8>(access | right);
        }
    }
    return access;
}

UInt32 numberOfEntries(const std::string& folder) {
    OpenFolder entries(folder);
    UInt32 count = 0;
    while (entries.next() != nullptr) {
        ++count;
    }
    return count;
}

UInt32 numberOfParent(const std::string& path) {
    struct stat status;
    return lstat(getParent(path).c_str(), &status) == 0 ? static_cast<UInt32>(status.st_ino) : 0;
}

bool isLocked(const struct statx& status) {
    return (status.stx_attributes & STATX_ATTR_IMMUTABLE) != 0;
}

UInt16 nodeFlags(const struct statx& status) {
    const int flags =
        (isLocked(status) ? kFSNodeLockedMask : 0) | (S_ISDIR(status.stx_mode) ? kFSNodeIsDirectoryMask : 0);
    return static_cast<UInt16>(flags);
}

void fillDates(const struct statx& status, FSCatalogInfoBitmap whichInfo, FSCatalogInfo& info) {
    if ((whichInfo & kFSCatInfoCreateDate) != 0) {
        const bool knowsBirth = (status.stx_mask & STATX_BTIME) != 0;
        info.createDate = platformDate(knowsBirth ? status.stx_btime : status.stx_mtime);
    }
    if ((whichInfo & kFSCatInfoContentMod) != 0) {
        info.contentModDate = platformDate(status.stx_mtime);
    }
    if ((whichInfo & kFSCatInfoAttrMod) != 0) {
        info.attributeModDate = platformDate(status.stx_ctime);
    }
    if ((whichInfo & kFSCatInfoAccessDate) != 0) {
        info.accessDate = platformDate(status.stx_atime);
    }
    if ((whichInfo & kFSCatInfoBackupDate) != 0) {
        info.backupDate = UTCDateTime{0, 0, 0};
    }
}

void fillPermissions(const std::string& path, const struct statx& status, FSCatalogInfo& info) {
    FSPermissionInfo permissions = {};
    permissions.userID = status.stx_uid;
    permissions.groupID = status.stx_gid;
    permissions.userAccess = userAccess(path);
    permissions.mode = status.stx_mode;
    std::memcpy(&info.permissions, &permissions, sizeof permissions);
}

void fillSizes(const struct statx& status, FSCatalogInfoBitmap whichInfo, FSCatalogInfo& info) {
    if ((whichInfo & kFSCatInfoDataSizes) != 0) {
        const bool isFolder = S_ISDIR(status.stx_mode);
        info.dataLogicalSize = isFolder ? 0 : status.stx_size;
        info.dataPhysicalSize = isFolder ? 0 : status.stx_blocks * 512;
    }
    if ((whichInfo & kFSCatInfoRsrcSizes) != 0) {
        info.rsrcLogicalSize = 0;
        info.rsrcPhysicalSize = 0;
    }
}

// Clears the fields for values that only the platform's own file systems store.
void clearForeignFields(FSCatalogInfoBitmap whichInfo, FSCatalogInfo& info) {
    if ((whichInfo & kFSCatInfoTextEncoding) != 0) {
        info.textEncodingHint = 0;
    }
    if ((whichInfo & kFSCatInfoVolume) != 0) {
        info.volume = 0;
    }
    if ((whichInfo & kFSCatInfoFinderInfo) != 0) {
        std::memset(info.finderInfo, 0, sizeof info.finderInfo);
    }
    if ((whichInfo & kFSCatInfoFinderXInfo) != 0) {
        std::memset(info.extFinderInfo, 0, sizeof info.extFinderInfo);
    }
}

int readStatus(const std::string& path, struct statx& status) {
    return statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS | STATX_BTIME, &status) == 0
               ? 0
               : errno;
}

int setOwner(const std::string& path, const FSPermissionInfo& permissions) {
    return fchownat(AT_FDCWD, path.c_str(), static_cast<uid_t>(permissions.userID),
                    static_cast<gid_t>(permissions.groupID), AT_SYMLINK_NOFOLLOW) == 0
               ? 0
               : errno;
}

int setPermissions(const std::string& path, FSCatalogInfoBitmap whichInfo, const FSCatalogInfo& info) {
    FSPermissionInfo permissions;
    std::memcpy(&permissions, &info.permissions, sizeof permissions);
    const int failure = (whichInfo & kFSCatInfoSetOwnership) != 0 ? setOwner(path, permissions) : 0;
    if (failure != 0 || (whichInfo & kFSCatInfoPermissions) == 0) {
        return failure;
    }
    const mode_t mode = permissions.mode & kModeBits;
    return fchmodat(AT_FDCWD, path.c_str(), mode, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}

int setDates(const std::string& path, FSCatalogInfoBitmap whichInfo, const FSCatalogInfo& info) {
    struct timespec times[2] = {{0, UTIME_OMIT}, {0, UTIME_OMIT}};
    if ((whichInfo & kFSCatInfoAccessDate) != 0) {
        times[0] = systemTime(info.accessDate);
    }
    if ((whichInfo & kFSCatInfoContentMod) != 0) {
        times[1] = systemTime(info.contentModDate);
    }
    return utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}

// Returns EPERM if the lock flag would have to change: only the administrator may lock files on this system.
int checkLock(const std::string& path, const FSCatalogInfo& info) {
    struct statx status;
    const int failure = readStatus(path, status);
    const bool shallBeLocked = (info.nodeFlags & kFSNodeLockedMask) != 0;
    return failure == 0 && shallBeLocked != isLocked(status) ? EPERM : failure;
}

}  // namespace

int readCatalogInfo(const std::string& path, FSCatalogInfoBitmap whichInfo, FSCatalogInfo& info) {
    struct statx status;
    const int failure = readStatus(path, status);
    if (failure != 0) {
        return failure;
    }
    if ((whichInfo & kFSCatInfoNodeFlags) != 0) {
        info.nodeFlags = nodeFlags(status);
    }
    if ((whichInfo & kFSCatInfoParentDirID) != 0) {
        info.parentDirID = numberOfParent(path);
    }
    if ((whichInfo & kFSCatInfoNodeID) != 0) {
        info.nodeID = static_cast<UInt32>(status.stx_ino);
    }
    if ((whichInfo & kFSCatInfoPermissions) != 0) {
        fillPermissions(path, status, info);
    }
    if ((whichInfo & kFSCatInfoUserAccess) != 0) {
        info.userPrivileges = 0;
    }
    if ((whichInfo & kFSCatInfoValence) != 0) {
        info.valence = S_ISDIR(status.stx_mode) ? numberOfEntries(path) : 0;
    }
    fillDates(status, whichInfo, info);
    fillSizes(status, whichInfo, info);
    clearForeignFields(whichInfo, info);
    return 0;
}

int writeCatalogInfo(const std::string& path, FSCatalogInfoBitmap whichInfo, const FSCatalogInfo& info) {
    int failure = (whichInfo & kFSCatInfoNodeFlags) != 0 ? checkLock(path, info) : 0;
    if (failure == 0 && (whichInfo & (kFSCatInfoPermissions | kFSCatInfoSetOwnership)) != 0) {
        failure = setPermissions(path, whichInfo, info);
    }
    if (failure == 0 && (whichInfo & (kFSCatInfoContentMod | kFSCatInfoAccessDate)) != 0) {
        failure = setDates(path, whichInfo, info);
    }
    return failure;
}

}  // namespace portability

// The File Manager: references to files and folders, and their attributes.
//
// A reference identifies an existing object and not a path. It stays valid if the object is renamed. If the
// object was deleted, functions return fnfErr for it. References must be compared with FSCompareFSRefs, not
// byte by byte, and are valid only in this process. Functions that fail leave their outputs unchanged. All
// functions are thread-safe.
#pragma once

#include <CoreFoundation/CFBase.h>

typedef SInt16 FSVolumeRefNum;
typedef UInt32 FSCatalogInfoBitmap;
typedef struct FSSpec* FSSpecPtr;
typedef struct __FSFileSecurity* FSFileSecurityRef;

#pragma pack(push, 2)
typedef struct FSRef {
    UInt8 hidden[80];
} FSRef;

/// A name of `length` UTF-16 units, not NUL-terminated.
typedef struct HFSUniStr255 {
    UInt16 length;
    UniChar unicode[255];
} HFSUniStr255;

/// Time since 1904-01-01 00:00 UTC: seconds in 48 bits, and a fraction in 1/65536 seconds.
typedef struct UTCDateTime {
    UInt16 highSeconds;
    UInt32 lowSeconds;
    UInt16 fraction;
} UTCDateTime;

/// The content of FSCatalogInfo.permissions. `mode` is st_mode of stat(2), including the file type.
typedef struct FSPermissionInfo {
    UInt32 userID;
    UInt32 groupID;
    UInt8 reserved1;
    UInt8 userAccess;
    UInt16 mode;
    FSFileSecurityRef fileSec;
} FSPermissionInfo;

/// Attributes of a file. Functions read or write only the fields that a bit map selects. `permissions` has
/// two possible types; for both, cast its address to FSPermissionInfo*.
typedef struct FSCatalogInfo {
    UInt16 nodeFlags;
    FSVolumeRefNum volume;
    UInt32 parentDirID;
    UInt32 nodeID;
    UInt8 sharingFlags;
    UInt8 userPrivileges;
    UInt8 reserved1;
    UInt8 reserved2;
    UTCDateTime createDate;
    UTCDateTime contentModDate;
    UTCDateTime attributeModDate;
    UTCDateTime accessDate;
    UTCDateTime backupDate;
#if defined(__LP64__)
    FSPermissionInfo permissions;
#else
    UInt32 permissions[4];
#endif
    UInt8 finderInfo[16];
    UInt8 extFinderInfo[16];
    UInt64 dataLogicalSize;
    UInt64 dataPhysicalSize;
    UInt64 rsrcLogicalSize;
    UInt64 rsrcPhysicalSize;
    UInt32 valence;
    TextEncoding textEncodingHint;
} FSCatalogInfo;
#pragma pack(pop)

typedef FSRef* FSRefPtr;

enum {
    kFSCatInfoNone = 0x00000000,
    kFSCatInfoTextEncoding = 0x00000001,
    kFSCatInfoNodeFlags = 0x00000002,
    kFSCatInfoVolume = 0x00000004,
    kFSCatInfoParentDirID = 0x00000008,
    kFSCatInfoNodeID = 0x00000010,
    kFSCatInfoCreateDate = 0x00000020,
    kFSCatInfoContentMod = 0x00000040,
    kFSCatInfoAttrMod = 0x00000080,
    kFSCatInfoAccessDate = 0x00000100,
    kFSCatInfoBackupDate = 0x00000200,
    kFSCatInfoPermissions = 0x00000400,
    kFSCatInfoFinderInfo = 0x00000800,
    kFSCatInfoFinderXInfo = 0x00001000,
    kFSCatInfoValence = 0x00002000,
    kFSCatInfoDataSizes = 0x00004000,
    kFSCatInfoRsrcSizes = 0x00008000,
    kFSCatInfoSettableInfo = 0x00001FE3,
    kFSCatInfoGettableInfo = 0x0003FFFF,
    kFSCatInfoUserAccess = 0x00080000,
    kFSCatInfoSetOwnership = 0x00100000,
    kFSCatInfoFSFileSecurityRef = 0x00400000
};

enum { kFSNodeLockedMask = 0x0001, kFSNodeIsDirectoryMask = 0x0010 };

CF_EXTERN_C_BEGIN

/// Makes a reference to the object at an absolute path in UTF-8. If the last component is a symbolic link, it
/// is followed. `isDirectory` may be NULL.
OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory);

/// Writes the object's NUL-terminated path in UTF-8. Returns pathTooLongErr if `pathBufferSize` bytes are
/// not enough.
OSStatus FSRefMakePath(const FSRef* ref, UInt8* path, UInt32 pathBufferSize);

/// Makes a reference to the object with this name of `nameLength` units in the folder `parentRef`. A symbolic
/// link is not followed.
OSErr FSMakeFSRefUnicode(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name,
                         TextEncoding textEncodingHint, FSRef* newRef);

/// Creates a folder. Returns dupFNErr if the name is in use. `catalogInfo` may be NULL if `whichInfo` is
/// kFSCatInfoNone; with kFSCatInfoPermissions it contains the folder's mode. `newRef` and `newDirID` may be
/// NULL. `newSpec` is ignored.
OSErr FSCreateDirectoryUnicode(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name,
                               FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* catalogInfo, FSRef* newRef,
                               FSSpecPtr newSpec, UInt32* newDirID);

/// Fills the selected fields. `catalogInfo` may be NULL if `whichInfo` is kFSCatInfoNone. `outName` and
/// `parentRef` may be NULL. `fsSpec` is ignored.
OSErr FSGetCatalogInfo(const FSRef* ref, FSCatalogInfoBitmap whichInfo, FSCatalogInfo* catalogInfo,
                       HFSUniStr255* outName, FSSpecPtr fsSpec, FSRef* parentRef);

/// Sets the selected fields. Of the permissions only `mode` is set; owner and group are set
/// with kFSCatInfoSetOwnership.
OSErr FSSetCatalogInfo(const FSRef* ref, FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* catalogInfo);

/// Deletes a file or an empty folder. Returns fBsyErr for a folder that is not empty. The reference is
/// stale afterwards.
OSErr FSDeleteObject(const FSRef* ref);
OSErr FSUnlinkObject(const FSRef* ref);

/// Returns noErr if both references are to the same object, diffVolErr if the objects are on different
/// volumes, and errFSRefsDifferent otherwise.
OSErr FSCompareFSRefs(const FSRef* ref1, const FSRef* ref2);

CF_EXTERN_C_END

#if defined(__cplusplus)
static_assert(sizeof(FSRef) == 80 && sizeof(HFSUniStr255) == 512 && sizeof(UTCDateTime) == 8,
              "packed records");
static_assert(sizeof(FSPermissionInfo) == (sizeof(void*) == 8 ? 20 : 16),
              "packed, with a pointer at its end");
static_assert(sizeof(FSCatalogInfo) == (sizeof(void*) == 8 ? 148 : 144),
              "packed, with permissions of two sizes");
static_assert(alignof(FSRef) == 1, "nothing but bytes");
static_assert(alignof(HFSUniStr255) == 2 && alignof(UTCDateTime) == 2, "packed");
static_assert(alignof(FSPermissionInfo) == 2 && alignof(FSCatalogInfo) == 2, "packed");
static_assert(offsetof(UTCDateTime, lowSeconds) == 2 && offsetof(UTCDateTime, fraction) == 6, "packed");
static_assert(offsetof(FSPermissionInfo, mode) == 10 && offsetof(FSPermissionInfo, fileSec) == 12, "packed");
static_assert(offsetof(FSCatalogInfo, createDate) == 16, "packed");
static_assert(offsetof(FSCatalogInfo, permissions) == 56, "fixed fields before the permissions");
static_assert(offsetof(FSCatalogInfo, finderInfo) == (sizeof(void*) == 8 ? 76 : 72), "packed");
static_assert(offsetof(FSCatalogInfo, dataLogicalSize) == (sizeof(void*) == 8 ? 108 : 104), "packed");
#endif

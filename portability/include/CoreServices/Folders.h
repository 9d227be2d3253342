// The Folder Manager: finds the platform's standard folders.
#pragma once

#include <CoreServices/Files.h>

enum {
    // Domains, which are passed instead of a volume
    kOnSystemDisk = -32768,
    kOnAppropriateDisk = -32767,
    kSystemDomain = -32766,
    kLocalDomain = -32765,
    kNetworkDomain = -32764,
    kUserDomain = -32763,
    kClassicDomain = -32762
};

enum {
    kDomainLibraryFolderType = 'dlib',
    kApplicationSupportFolderType = 'asup',
    kPreferencesFolderType = 'pref',
    kCurrentUserFolderType = 'cusr',
    kTemporaryFolderType = 'temp',
    kChewableItemsFolderType = 'flnt',
    kSharedUserDataFolderType = 'sdat'
};

enum { kDontCreateFolder = 0, kCreateFolder = 1 };

CF_EXTERN_C_BEGIN

/// Makes a reference to the folder of this type in a domain. A missing folder is created if `createFolder` is
/// true; otherwise the result is fnfErr. Returns nsvErr for an unknown domain. Thread-safe.
OSErr FSFindFolder(FSVolumeRefNum vRefNum, OSType folderType, Boolean createFolder, FSRef* foundRef);

CF_EXTERN_C_END

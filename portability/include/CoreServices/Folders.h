// The Folder Manager: where the platform keeps what.
#pragma once

#include <CoreServices/Files.h>

enum {
    // Domains, given in place of a volume
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

/// The folder of that type in a domain. When it is absent it is made if `createFolder` says so, else the
/// result is fnfErr; nsvErr for an unknown domain. Any thread.
OSErr FSFindFolder(FSVolumeRefNum vRefNum, OSType folderType, Boolean createFolder, FSRef* foundRef);

CF_EXTERN_C_END

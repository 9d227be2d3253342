// Bundles: folders with an Info.plist, an executable and resources.
#pragma once

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

extern const CFStringRef kCFBundleInfoDictionaryVersionKey;
extern const CFStringRef kCFBundleExecutableKey;
extern const CFStringRef kCFBundleIdentifierKey;
extern const CFStringRef kCFBundleVersionKey;
extern const CFStringRef kCFBundleDevelopmentRegionKey;
extern const CFStringRef kCFBundleNameKey;
extern const CFStringRef kCFBundleLocalizationsKey;

CFTypeID CFBundleGetTypeID(void);

/// The bundle of the running program: the one around its executable, else the executable's folder. Not the
/// caller's to release.
CFBundleRef CFBundleGetMainBundle(void);

/// The bundle in the folder `bundleURL`; the caller releases it. NULL when there is no such folder. No
/// Info.plist is needed, and no code is loaded.
CFBundleRef CFBundleCreate(CFAllocatorRef allocator, CFURLRef bundleURL);

/// The bundle with that identifier among those in use and those whose code is loaded; of several the one with
/// the highest version. NULL without one; the disk is not searched. Not the caller's to release.
CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef bundleID);

/// The value under `key` in the user's language, else in the Info.plist; NULL without one. Lives as long as
/// the bundle.
CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key);

/// The bundle's identifier; NULL without one. Lives as long as the bundle.
CFStringRef CFBundleGetIdentifier(CFBundleRef bundle);

/// CFBundleVersion as a packed number (one byte major, half a byte minor and bug each, stage, build); 0 when
/// it is missing or has another form.
UInt32 CFBundleGetVersionNumber(CFBundleRef bundle);

/// The bundle's folder, its executable (NULL without one) and its folder of resources. The caller releases
/// them.
CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle);
CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle);
CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle);

/// The resource `resourceName`.`resourceType` in the folder `subDirName` of the resources, first without a
/// language, then in the user's. Type and folder may be NULL. NULL when there is none. The caller releases
/// the URL.
CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef resourceName, CFStringRef resourceType,
                                 CFStringRef subDirName);

CF_EXTERN_C_END

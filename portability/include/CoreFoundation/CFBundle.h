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

/// Returns the bundle of the running program: the bundle that contains its executable, otherwise the
/// executable's folder. The caller does not release it.
CFBundleRef CFBundleGetMainBundle(void);

/// Returns the bundle for the folder `bundleURL`. The caller releases it. Returns NULL if the folder does not
/// exist. The folder needs no Info.plist. No code is loaded.
CFBundleRef CFBundleCreate(CFAllocatorRef allocator, CFURLRef bundleURL);

/// Returns the bundle with this identifier. Searches the bundles in use and the bundles whose code is loaded,
/// but not the disk. If several match, returns the one with the highest version. Returns NULL if there is
/// none. The caller does not release it.
CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef bundleID);

/// Returns the value of `key` in the user's language, otherwise in the Info.plist, otherwise NULL. The value
/// is valid as long as the bundle.
CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key);

/// Returns the bundle's identifier, or NULL if it has none. The string is valid as long as the bundle.
CFStringRef CFBundleGetIdentifier(CFBundleRef bundle);

/// Returns CFBundleVersion as a packed number. The first byte is the major version, the second byte contains
/// the minor and the bug-fix version (4 bits each), and then follow stage and build. Returns 0 if the version
/// is missing or has another form.
UInt32 CFBundleGetVersionNumber(CFBundleRef bundle);

/// Return the bundle's folder, its executable (NULL if it has none) and its resources folder. The caller
/// releases the URLs.
CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle);
CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle);
CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle);

/// Returns the URL of the resource `resourceName`.`resourceType` in the folder `subDirName` of the resources.
/// Searches first the resources without a language, then those of the user's languages. `resourceType` and
/// `subDirName` may be NULL. Returns NULL if there is no such resource. The caller releases the URL.
CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef resourceName, CFStringRef resourceType,
                                 CFStringRef subDirName);

CF_EXTERN_C_END

// URLs, mainly of files.
#pragma once

#include <CoreFoundation/CFBase.h>

typedef CFIndex CFURLPathStyle;
enum { kCFURLPOSIXPathStyle = 0, kCFURLHFSPathStyle = 1, kCFURLWindowsPathStyle = 2 };

struct FSRef;

CF_EXTERN_C_BEGIN

CFTypeID CFURLGetTypeID(void);

/// Creates a URL from text that is already escaped. The caller releases it. Returns NULL if the text contains
/// characters that are not allowed in a URL. `baseURL` must be NULL.
CFURLRef CFURLCreateWithString(CFAllocatorRef allocator, CFStringRef URLString, CFURLRef baseURL);

/// Returns the text of the URL, which is valid as long as the URL.
CFStringRef CFURLGetString(CFURLRef anURL);

/// Creates a URL for a path. The caller releases it. A relative path starts at the current folder. Returns
/// NULL for an empty path. `isDirectory` says whether the URL ends with a slash; the disk is not accessed.
CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef allocator, CFStringRef filePath,
                                       CFURLPathStyle pathStyle, Boolean isDirectory);

/// The same for a path of `bufLen` bytes, as the file system stores it.
CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, const UInt8* buffer,
                                                 CFIndex bufLen, Boolean isDirectory);

/// Creates a URL by appending a component to the path of `url`; the component is escaped if necessary. The
/// caller releases it. Returns NULL if `url` has no path.
CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef allocator, CFURLRef url,
                                               CFStringRef pathComponent, Boolean isDirectory);

/// Writes the NUL-terminated path of a file URL, without a trailing slash (except for "/"). Returns false if
/// `maxBufLen` bytes are not enough or the URL has no path.
Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                         CFIndex maxBufLen);

/// Makes a reference to the file or folder of the URL. Returns false if it does not exist or the URL is not a
/// file URL.
Boolean CFURLGetFSRef(CFURLRef url, struct FSRef* fsRef);

/// Creates the URL of the file or folder. The caller releases it. Returns NULL if the reference is stale.
CFURLRef CFURLCreateFromFSRef(CFAllocatorRef allocator, const struct FSRef* fsRef);

CF_EXTERN_C_END

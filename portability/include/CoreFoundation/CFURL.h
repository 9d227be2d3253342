// Addresses, above all of files.
#pragma once

#include <CoreFoundation/CFBase.h>

typedef CFIndex CFURLPathStyle;
enum { kCFURLPOSIXPathStyle = 0, kCFURLHFSPathStyle = 1, kCFURLWindowsPathStyle = 2 };

struct FSRef;

CF_EXTERN_C_BEGIN

CFTypeID CFURLGetTypeID(void);

/// The URL of a text that is one already, with its escapes; the caller releases it. NULL if the text has
/// characters that no URL has. `baseURL` must be NULL.
CFURLRef CFURLCreateWithString(CFAllocatorRef allocator, CFStringRef URLString, CFURLRef baseURL);

/// The text of the URL. Lives as long as the URL.
CFStringRef CFURLGetString(CFURLRef anURL);

/// The URL of a path; the caller releases it. A relative path is completed with the current folder. NULL for
/// an empty path. `isDirectory` says whether the URL ends with a slash; the disk is not asked.
CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef allocator, CFStringRef filePath,
                                       CFURLPathStyle pathStyle, Boolean isDirectory);

/// The same from the `bufLen` bytes of a path as the file system keeps it.
CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, const UInt8* buffer,
                                                 CFIndex bufLen, Boolean isDirectory);

/// The URL with one more component, escaped where needed, behind its path; the caller releases it. NULL when
/// the URL has no path.
CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef allocator, CFURLRef url,
                                               CFStringRef pathComponent, Boolean isDirectory);

/// Writes the path that a file URL stands for, without a slash at its end (except for "/") and with a
/// terminating zero. False when `maxBufLen` bytes are too few or the URL has no path.
Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer,
                                         CFIndex maxBufLen);

/// The reference of the file or folder that the URL names. False when it does not exist or the URL is not a
/// file's.
Boolean CFURLGetFSRef(CFURLRef url, struct FSRef* fsRef);

/// The URL of the file or folder; the caller releases it. NULL when the reference is stale.
CFURLRef CFURLCreateFromFSRef(CFAllocatorRef allocator, const struct FSRef* fsRef);

CF_EXTERN_C_END

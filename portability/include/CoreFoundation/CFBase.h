// Core Foundation's base types.
//
// The name of a function says who owns the object that it returns. If it contains Create or Copy, the caller
// owns the object and must release it. If it contains Get, the caller does not own it. These objects are not
// Foundation objects: on this system a reference of one kind must not be cast to the other.
#pragma once

#include <CoreServices/MacTypes.h>

#if defined(__cplusplus)
#define CF_EXTERN_C_BEGIN extern "C" {
#define CF_EXTERN_C_END }
#else
#define CF_EXTERN_C_BEGIN
#define CF_EXTERN_C_END
#endif

#if !defined(TRUE)
#define TRUE 1
#endif
#if !defined(FALSE)
#define FALSE 0
#endif

typedef long CFIndex;
typedef unsigned long CFTypeID;
typedef unsigned long CFOptionFlags;
typedef unsigned long CFHashCode;

typedef const void* CFTypeRef;
typedef CFTypeRef CFPropertyListRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFString* CFStringRef;
typedef const struct __CFArray* CFArrayRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef const struct __CFData* CFDataRef;
typedef const struct __CFURL* CFURLRef;
typedef struct __CFBundle* CFBundleRef;
typedef struct __CFError* CFErrorRef;

typedef struct CFRange {
    CFIndex location;
    CFIndex length;
} CFRange;

static inline CFRange CFRangeMake(CFIndex location, CFIndex length) {
    CFRange range;
    range.location = location;
    range.length = length;
    return range;
}

typedef CFIndex CFComparisonResult;
enum { kCFCompareLessThan = -1, kCFCompareEqualTo = 0, kCFCompareGreaterThan = 1 };
enum { kCFNotFound = -1 };

CF_EXTERN_C_BEGIN

/// The allocator for all functions here: NULL.
extern const CFAllocatorRef kCFAllocatorDefault;

/// Adds a reference to the object and returns the object. NULL ends the program. Thread-safe.
CFTypeRef CFRetain(CFTypeRef cf);

/// Removes a reference. Removing the last one frees the object. NULL ends the program. Thread-safe.
void CFRelease(CFTypeRef cf);

/// Returns the object's type ID. Callers compare it with CFStringGetTypeID() and similar functions before
/// a cast.
CFTypeID CFGetTypeID(CFTypeRef cf);

CF_EXTERN_C_END

#if defined(__cplusplus)
static_assert(sizeof(CFIndex) == sizeof(void*) && sizeof(CFTypeID) == sizeof(void*), "pointer-sized scalars");
static_assert(sizeof(CFRange) == 2 * sizeof(void*) && alignof(CFRange) == alignof(void*), "not packed");
#endif

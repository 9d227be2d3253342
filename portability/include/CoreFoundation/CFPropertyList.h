// Property lists: dictionaries, arrays, strings, numbers, dates and data in a file's form.
#pragma once

#include <CoreFoundation/CFBase.h>

/// How much of what is read may be changed.
typedef CFOptionFlags CFPropertyListMutabilityOptions;
enum {
    kCFPropertyListImmutable = 0,
    kCFPropertyListMutableContainers = 1,
    kCFPropertyListMutableContainersAndLeaves = 2
};

typedef CFIndex CFPropertyListFormat;
enum {
    kCFPropertyListOpenStepFormat = 1,
    kCFPropertyListXMLFormat_v1_0 = 100,
    kCFPropertyListBinaryFormat_v1_0 = 200
};

CF_EXTERN_C_BEGIN

/// The property list in `data`, in whatever form; the caller releases it. NULL when it holds none; nothing is
/// raised or logged then. `format` gets the form when there is one, `error` why there is none, for the caller
/// to release; both may be NULL. Any thread.
CFPropertyListRef CFPropertyListCreateWithData(CFAllocatorRef allocator, CFDataRef data,
                                               CFOptionFlags options, CFPropertyListFormat* format,
                                               CFErrorRef* error);

/// The bytes of the property list in the XML form; the caller releases them. NULL for another form, and if a
/// value cannot be in a property list: `error`, which may be NULL, then gets why, for the caller to release.
/// Any thread.
CFDataRef CFPropertyListCreateData(CFAllocatorRef allocator, CFPropertyListRef propertyList,
                                   CFPropertyListFormat format, CFOptionFlags options, CFErrorRef* error);

CF_EXTERN_C_END

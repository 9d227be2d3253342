// Property lists: dictionaries, arrays, strings, numbers, dates and data that can be stored in files.
#pragma once

#include <CoreFoundation/CFBase.h>

/// Says which of the read objects can be changed.
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

/// Reads the property list in `data` in any of the formats. The caller releases it. Returns NULL if `data` is
/// not a property list; nothing is raised or logged in that case.
///
/// On success `format` is set to the format. On failure `error` is set to the reason, which the caller
/// releases. Both may be NULL. Thread-safe.
CFPropertyListRef CFPropertyListCreateWithData(CFAllocatorRef allocator, CFDataRef data,
                                               CFOptionFlags options, CFPropertyListFormat* format,
                                               CFErrorRef* error);

/// Returns the property list in the XML format. The caller releases the data. Returns NULL for any other
/// format, and if a value is not allowed in a property list. In both cases `error`, which may be NULL, is set
/// to the reason, which the caller releases. Thread-safe.
CFDataRef CFPropertyListCreateData(CFAllocatorRef allocator, CFPropertyListRef propertyList,
                                   CFPropertyListFormat format, CFOptionFlags options, CFErrorRef* error);

CF_EXTERN_C_END

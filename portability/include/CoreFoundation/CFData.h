// Data objects, which contain bytes.
#pragma once

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

CFTypeID CFDataGetTypeID(void);

/// Creates an object with a copy of `length` bytes. The caller releases it.
CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length);

/// Returns the number of bytes.
CFIndex CFDataGetLength(CFDataRef theData);

/// Returns the bytes, which are valid as long as the object.
const UInt8* CFDataGetBytePtr(CFDataRef theData);

CF_EXTERN_C_END

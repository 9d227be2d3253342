// Blocks of bytes.
#pragma once

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

CFTypeID CFDataGetTypeID(void);

/// A copy of `length` bytes; the caller releases it.
CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length);

/// The number of bytes.
CFIndex CFDataGetLength(CFDataRef theData);

/// The bytes, which live as long as the object.
const UInt8* CFDataGetBytePtr(CFDataRef theData);

CF_EXTERN_C_END

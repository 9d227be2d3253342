// Arrays of objects.
#pragma once

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

CFTypeID CFArrayGetTypeID(void);

/// The number of values.
CFIndex CFArrayGetCount(CFArrayRef theArray);

/// The value at `idx`, which is not the caller's to release. `idx` must lie below the count.
const void* CFArrayGetValueAtIndex(CFArrayRef theArray, CFIndex idx);

CF_EXTERN_C_END

// Arrays of objects.
#pragma once

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

CFTypeID CFArrayGetTypeID(void);

/// Returns the number of values.
CFIndex CFArrayGetCount(CFArrayRef theArray);

/// Returns the value at `idx`, which must be less than the count. The array owns the value.
const void* CFArrayGetValueAtIndex(CFArrayRef theArray, CFIndex idx);

CF_EXTERN_C_END

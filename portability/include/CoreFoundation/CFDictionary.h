// Objects under keys.
#pragma once

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

CFTypeID CFDictionaryGetTypeID(void);

/// The number of keys.
CFIndex CFDictionaryGetCount(CFDictionaryRef theDict);

/// Whether there is a value under `key`.
Boolean CFDictionaryContainsKey(CFDictionaryRef theDict, const void* key);

/// The value under `key`, which is not the caller's to release; NULL without one.
const void* CFDictionaryGetValue(CFDictionaryRef theDict, const void* key);

CF_EXTERN_C_END

// Dictionaries of objects.
#pragma once

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

CFTypeID CFDictionaryGetTypeID(void);

/// Returns the number of keys.
CFIndex CFDictionaryGetCount(CFDictionaryRef theDict);

/// Returns whether the dictionary has a value for `key`.
Boolean CFDictionaryContainsKey(CFDictionaryRef theDict, const void* key);

/// Returns the value for `key`, or NULL if there is none. The dictionary owns the value.
const void* CFDictionaryGetValue(CFDictionaryRef theDict, const void* key);

CF_EXTERN_C_END

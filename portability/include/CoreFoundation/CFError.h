// Error objects.
#pragma once

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

/// Returns the error domain to which the code belongs. The string is valid as long as the error.
CFStringRef CFErrorGetDomain(CFErrorRef err);

CFIndex CFErrorGetCode(CFErrorRef err);

CF_EXTERN_C_END

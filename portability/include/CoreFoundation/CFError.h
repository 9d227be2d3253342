// Why something failed.
#pragma once

#include <CoreFoundation/CFBase.h>

CF_EXTERN_C_BEGIN

/// The family of errors that the code belongs to. Lives as long as the error.
CFStringRef CFErrorGetDomain(CFErrorRef err);

CFIndex CFErrorGetCode(CFErrorRef err);

CF_EXTERN_C_END

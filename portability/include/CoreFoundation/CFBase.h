// Core Foundation's base types. Objects are the system's own object references; who owns one is told by the name of
// the function that hands it out (Create and Copy: the caller; Get: not the caller).
#pragma once

#include <CoreServices/MacTypes.h>

#if defined(__cplusplus)
#define CF_EXTERN_C_BEGIN extern "C" {
#define CF_EXTERN_C_END }
#else
#define CF_EXTERN_C_BEGIN
#define CF_EXTERN_C_END
#endif

// The platform's clocks, which count from the start of the system.
#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreServices/MacTypes.h>

CF_EXTERN_C_BEGIN

/// Writes the number of microseconds since about the start of the system. The value never decreases, and may
/// stop while the computer sleeps. Thread-safe.
void Microseconds(UnsignedWide* microTickCount);

/// Returns the number of ticks (1/60 s) since about the start of the system, modulo 2^32. Subtract two values
/// as UInt32. Thread-safe.
UInt32 TickCount(void);

CF_EXTERN_C_END

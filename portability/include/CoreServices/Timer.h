// The platform's clocks that count from the start of the system.
#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreServices/MacTypes.h>

CF_EXTERN_C_BEGIN

/// Microseconds since about the start of the system; never goes back, may stand still while the machine
/// sleeps. Any thread.
void Microseconds(UnsignedWide* microTickCount);

/// Ticks (1/60 s) since about the start of the system, modulo 2^32: subtract two values as UInt32. Any
/// thread.
UInt32 TickCount(void);

CF_EXTERN_C_END

// GNUstep's file manager without its OSType, which is another type than the platform's in 32 bits.
#pragma once

#define OSType GNUstepOSType
#include_next <Foundation/NSFileManager.h>
#undef OSType

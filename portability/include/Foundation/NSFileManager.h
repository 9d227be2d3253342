// GNUstep's file manager without its OSType: in 32 bits the platform's is another type.
#pragma once

#define OSType GNUstepOSType
#include_next <Foundation/NSFileManager.h>
#undef OSType

// GNUstep's file manager without its OSType, which differs from the platform's type in 32-bit programs.
#pragma once

#define OSType GNUstepOSType
#include_next <Foundation/NSFileManager.h>
#undef OSType

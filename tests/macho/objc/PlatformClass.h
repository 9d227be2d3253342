// The classes of macOS on this system.
#pragma once

#import <Foundation/Foundation.h>
#include <objc/runtime.h>

#include <cstring>

namespace dovrel::macho {

/// The class that has this name on macOS, or nil. It has another name here if the portability layer supplies
/// it in place of GNUstep's.
inline Class platformClass(const char* name) {
    return std::strcmp(name, "NSTask") == 0 ? [NSTask class] : (Class)objc_getClass(name);
}

}  // namespace dovrel::macho

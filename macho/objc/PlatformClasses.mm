#include "macho/objc/PlatformClasses.h"

#import <AppKit/AppKit.h>
#include <objc/runtime.h>

#include <cstring>

namespace dovrel::macho {

// Classes of the portability layer have other names than on the platform.
Class platformClass(const char* name) {
    if (std::strcmp(name, "NSAlert") == 0) return [NSAlert class];
    if (std::strcmp(name, "NSAutoreleasePool") == 0) return [NSAutoreleasePool class];
    if (std::strcmp(name, "NSTask") == 0) return [NSTask class];
    return (Class)objc_getClass(name);
}

}  // namespace dovrel::macho

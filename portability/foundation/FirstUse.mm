#include "portability/foundation/FirstUse.h"

#import <Foundation/Foundation.h>

namespace portability {

// Leaves out NSRunLoop, whose preparation creates a run loop and its pipe for this thread.
void useFoundation() noexcept {
    @try {
        NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
        [[NSThread currentThread] threadDictionary];
        [NSThread mainThread];
        [pool release];
    } @catch (...) {
    }
}

}  // namespace portability

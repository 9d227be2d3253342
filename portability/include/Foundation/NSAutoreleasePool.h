// The autorelease pool for code that uses Foundation in a host's process. At its first use GNUstep ignores
// SIGPIPE, and later it sets the locale of the process; both belong to the host. From `alloc` to `release` of
// this pool, GNUstep cannot do either on the pool's thread. So code must open a pool before it sends a
// message to a class of Foundation.
//
// The class has a name of its own, because creating GNUstep's own pool already sends such a message.
#pragma once

#include_next <Foundation/NSAutoreleasePool.h>

/// A pool belongs to the thread that created it. The pools of a thread must be released in reverse order.
GS_ROOT_CLASS @interface DovrelPool {
    Class isa;
    id pool_;
}

+ (id)alloc;
- (id)init;
+ (Class)class;

/// Releases the pool, and all objects that were autoreleased since it was created.
- (void)release;
- (void)drain;

/// Returns the number of these objects.
- (unsigned)autoreleaseCount;

@end

#define NSAutoreleasePool DovrelPool

// The pool of code that uses Foundation inside somebody else's process. When GNUstep is used for the first time it
// ignores SIGPIPE, and later it sets the locale of the process; both belong to the host. From alloc to release of
// such a pool it can do neither on the pool's thread. So code that sends a message to a class of Foundation opens a
// pool first.
//
// The class has a name of its own, because GNUstep's is one of those messages.
#pragma once

#include_next <Foundation/NSAutoreleasePool.h>

/// Belongs to the thread that made it; pools of a thread are released in the reverse order.
GS_ROOT_CLASS @interface DovrelPool {
    Class isa;
    id pool_;
}

+ (id)alloc;
- (id)init;
+ (Class)class;

/// Releases all objects that were autoreleased since, and the pool.
- (void)release;
- (void)drain;

/// The number of those objects.
- (unsigned)autoreleaseCount;

@end

#define NSAutoreleasePool DovrelPool

#include "portability/tasks/MainRunLoop.h"

#import <Foundation/Foundation.h>
#include <objc/runtime.h>

#include "portability/appleevents/CallQueue.h"
#include "portability/posix/MainThread.h"

namespace {

// Never destroyed, because other threads may make calls while the process exits.
portability::CallQueue& callQueue() {
    static auto& queue = *new portability::CallQueue;
    return queue;
}

}  // namespace

// The run loop calls this class.
@interface PortabilityRemoteCall : NSObject
+ (void)serveOldest;
@end

@implementation PortabilityRemoteCall

// The check is necessary because Foundation treats the thread that first used Foundation as its main thread.
// The queue can be empty, because a caller removes its call after a time-out.
+ (void)serveOldest {
    if (portability::isMainThread()) callQueue().serveOldest();
}

@end

namespace portability {

namespace {

/// Returns the pointer in the instance variable `name`. Returns null if the object is nil or has no
/// such variable.
void* variable(id object, const char* name) {
    const Ivar found = class_getInstanceVariable(object_getClass(object), name);
    return found != nullptr ? (void*)object_getIvar(object, found) : nullptr;
}

/// Returns whether the main thread is inside its run loop. Foundation has no function for this. Requesting
/// the main thread's run loop would create it, and two threads must not do that at the same time.
bool isMainThreadInRunLoop() {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    id const information = (id)variable([NSThread mainThread], "_runLoopInfo");
    id const loop = (id)variable(information, "loop");
    const bool isInside = variable(loop, "_currentMode") != nullptr;
    [pool release];
    return isInside;
}

// Wakes the main run loop. If the message cannot be sent, the caller's wait times out. This function contains
// no C++ objects, because C++ objects in a function with @try do not work on all systems.
void wakeRunLoop() {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    @try {
        [PortabilityRemoteCall performSelectorOnMainThread:@selector(serveOldest)
                                                withObject:nil
                                             waitUntilDone:NO];
    } @catch (...) {
    }
    [pool release];
}

}  // namespace

bool runOnMainRunLoop(void* (*procedure)(void*), void* parameter, void** result) {
    if (!isMainThreadInRunLoop()) return false;
    callQueue().open();  // never closed; isMainThreadInRunLoop() says whether the loop runs
    return callQueue().run(procedure, parameter, result, wakeRunLoop);
}

}  // namespace portability

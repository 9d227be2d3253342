#include "portability/tasks/MainRunLoop.h"

#import <Foundation/Foundation.h>
#include <objc/runtime.h>

#include "portability/appleevents/CallQueue.h"
#include "portability/posix/MainThread.h"

namespace {

// Never destroyed: other threads may still call while the process ends.
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

// Foundation's main thread is the one that first used Foundation, which may be another one. There is no call
// if its caller has taken it back.
+ (void)serveOldest {
    if (portability::isMainThread()) callQueue().serveOldest();
}

@end

namespace portability {

namespace {

/// The pointer in that instance variable; null if the object is nil or has no such variable.
void* variable(id object, const char* name) {
    const Ivar found = class_getInstanceVariable(object_getClass(object), name);
    return found != nullptr ? (void*)object_getIvar(object, found) : nullptr;
}

/// Whether the main thread is inside its run loop. Foundation has no call that tells: asking for the main
/// thread's run loop makes one, which another thread must not do while the main thread may be doing the same.
bool isMainThreadInRunLoop() {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    id const information = (id)variable([NSThread mainThread], "_runLoopInfo");
    id const loop = (id)variable(information, "loop");
    const bool isInside = variable(loop, "_currentMode") != nullptr;
    [pool release];
    return isInside;
}

// No object of C++ lives in a function with @try: their exceptions do not mix everywhere. If the message
// cannot be sent, the caller takes the call back.
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
    callQueue().open();  // whether the loop runs is not the queue's business, so it is never closed
    return callQueue().run(procedure, parameter, result, wakeRunLoop);
}

}  // namespace portability

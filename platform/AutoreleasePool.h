// AutoreleasePool: a pool of the Objective-C runtime for code that calls Core Foundation only.
//
// On macOS, functions of Core Foundation may autorelease objects of Foundation internally. Without a pool on the
// calling thread they would stay in memory. The runtime's functions are used instead of NSAutoreleasePool because
// a message to a class of Foundation would load and initialise Foundation in the host. Code that sends messages
// to Foundation opens an NSAutoreleasePool.
#pragma once

// The compilers call these functions, and the runtime exports them from 10.7 on, but no header declares them.
extern "C" {
void* objc_autoreleasePoolPush(void);
void objc_autoreleasePoolPop(void* pool);
}

namespace dovrel {

/// Pools of a thread must end in the reverse order.
class AutoreleasePool {
  public:
    AutoreleasePool() : pool_(objc_autoreleasePoolPush()) {}
    AutoreleasePool(const AutoreleasePool&) = delete;
    AutoreleasePool& operator=(const AutoreleasePool&) = delete;

    /// Releases all objects that were autoreleased on this thread since the constructor.
    ~AutoreleasePool() { objc_autoreleasePoolPop(pool_); }

  private:
    void* const pool_;
};

}  // namespace dovrel

// Mutex: a lock that starts free, is not recursive, and may be released by any thread.
#pragma once

#include "platform/synchronization/SynchronizationObject.h"

namespace dovrel {

class Mutex : public SynchronizationObject {
  public:
    /// True when the lock is now the caller's; false when it did not become free in time. 0 never blocks,
    /// kWaitForever always waits it out. `wait` is the same operation.
    virtual bool lock(int32_t timeoutMilliseconds) = 0;

    /// False when the mutex was not locked.
    virtual bool unlock() = 0;
};

}  // namespace dovrel

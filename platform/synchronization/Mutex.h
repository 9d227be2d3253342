// Mutex: a lock that is not recursive and may be released by any thread. A new mutex is not locked.
#pragma once

#include "platform/synchronization/SynchronizationObject.h"

namespace dovrel {

class Mutex : public SynchronizationObject {
  public:
    /// Locks the mutex. Returns false if it did not become free within the time-out. 0 never blocks;
    /// kWaitForever blocks until the mutex is free. `wait` does the same.
    virtual bool lock(int32_t timeoutMilliseconds) = 0;

    /// Releases the mutex. Returns false if it was not locked.
    virtual bool unlock() = 0;
};

}  // namespace dovrel

// MacOSXMutex: a mutex implemented with a binary semaphore of Multiprocessing Services.
#pragma once

#include <CoreServices/CoreServices.h>

#include "platform/synchronization/Mutex.h"

namespace dovrel {

class MacOSXMutex : public Mutex {
  public:
    /// Throws a SystemException if the system cannot create a semaphore.
    MacOSXMutex();
    ~MacOSXMutex() override;

    bool wait(int32_t timeoutMilliseconds) override;

    /// As Mutex::lock. Time-outs below kWaitForever (-1) are passed to the platform, which reads them
    /// as microseconds.
    bool lock(int32_t timeoutMilliseconds) override;
    bool unlock() override;

  private:
    MPSemaphoreID semaphore_ = kInvalidID;
};

}  // namespace dovrel

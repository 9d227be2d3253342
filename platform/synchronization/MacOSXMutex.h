// MacOSXMutex: the mutex as a binary semaphore of Multiprocessing Services.
#pragma once

#include <CoreServices/CoreServices.h>

#include "platform/synchronization/Mutex.h"

namespace dovrel {

class MacOSXMutex : public Mutex {
  public:
    /// Throws a SystemException when the system has no semaphore left.
    MacOSXMutex();
    ~MacOSXMutex() override;

    bool wait(int32_t timeoutMilliseconds) override;

    /// Time-outs below kWaitForever are durations of the platform: microseconds.
    bool lock(int32_t timeoutMilliseconds) override;
    bool unlock() override;

  private:
    MPSemaphoreID semaphore_ = kInvalidID;
};

}  // namespace dovrel

// CriticalSection: a recursive lock. Only one thread at a time can be inside, and it may enter again.
#pragma once

#include "platform/synchronization/SynchronizationObject.h"

namespace dovrel {

class CriticalSection : public SynchronizationObject {
  public:
    /// Blocks without a time-out until the section is free or the calling thread is already inside. Every
    /// call needs its own leave().
    virtual void enter() = 0;

    /// Must be called by the thread that entered.
    virtual void leave() = 0;
};

}  // namespace dovrel

// CriticalSection: lets one thread at a time into a region of code, which it may enter again while inside.
#pragma once

#include "platform/synchronization/SynchronizationObject.h"

namespace dovrel {

class CriticalSection : public SynchronizationObject {
  public:
    /// Waits without limit until the region is free or already the caller's. Every entry needs its own leave.
    virtual void enter() = 0;

    /// To be called by the thread that entered.
    virtual void leave() = 0;
};

}  // namespace dovrel

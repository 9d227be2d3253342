// MacOSXCriticalSection: a critical section implemented with a critical region of Multiprocessing Services.
#pragma once

#include <CoreServices/CoreServices.h>

#include "platform/synchronization/CriticalSection.h"

namespace dovrel {

class MacOSXCriticalSection : public CriticalSection {
  public:
    /// Throws a SystemException if the system cannot create a critical region.
    MacOSXCriticalSection();
    ~MacOSXCriticalSection() override;

    /// Not supported: throws a constant text as `const char*`, not an exception object.
    bool wait(int32_t timeoutMilliseconds) override;

    void enter() override;
    void leave() override;

  private:
    MPCriticalRegionID region_ = kInvalidID;
};

}  // namespace dovrel

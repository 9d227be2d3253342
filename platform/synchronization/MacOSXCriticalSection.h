// MacOSXCriticalSection: the critical section as a critical region of Multiprocessing Services.
#pragma once

#include <CoreServices/CoreServices.h>

#include "platform/synchronization/CriticalSection.h"

namespace dovrel {

class MacOSXCriticalSection : public CriticalSection {
  public:
    /// Throws a SystemException when the system has no region left.
    MacOSXCriticalSection();
    ~MacOSXCriticalSection() override;

    /// Not supported: throws a `const char*`, a constant text and no exception object.
    bool wait(int32_t timeoutMilliseconds) override;

    void enter() override;
    void leave() override;

  private:
    MPCriticalRegionID region_ = kInvalidID;
};

}  // namespace dovrel

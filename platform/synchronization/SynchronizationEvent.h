// SynchronizationEvent: after it is signalled, it releases all threads that wait on it, now and later, until it
// is reset.
//
// A new event is not signalled. `wait` with kWaitForever blocks until the event is signalled. With any
// other time-out it does not block: it only returns whether the event is signalled. There are no waits of
// limited length.
#pragma once

#include "platform/synchronization/SynchronizationObject.h"

namespace dovrel {

class SynchronizationEvent : public SynchronizationObject {
  public:
    /// Releases every waiter. The event stays signalled until it is reset. After the first waiter can run,
    /// this function no longer uses the object, so the waiter may delete it.
    virtual void signal() = 0;

    /// Makes the event unsignalled again. Throws a SystemException if the system cannot create a new event.
    virtual void reset() = 0;
};

}  // namespace dovrel

// SynchronizationEvent: a gate that releases all its waiters, now and later, once it has been signalled.
//
// A new event is armed. `wait` with kWaitForever blocks until the event is signalled; with any other time-out
// it only looks: there are no waits of a limited length. It answers true for a signalled event.
#pragma once

#include "platform/synchronization/SynchronizationObject.h"

namespace dovrel {

class SynchronizationEvent : public SynchronizationObject {
  public:
    /// Releases every waiter. The event stays signalled until it is reset. Does not touch the object any more
    /// once a waiter can be released, so the waiter may delete it.
    virtual void signal() = 0;

    /// Arms the event again. Throws a SystemException when that is not possible.
    virtual void reset() = 0;
};

}  // namespace dovrel

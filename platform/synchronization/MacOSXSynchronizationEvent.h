// MacOSXSynchronizationEvent: the event as an event group of Multiprocessing Services that is deleted to
// signal it.
//
// The platform's own way of setting an event releases one waiter only; deleting the group releases them all,
// and a wait on the identifier of a deleted group fails at once, which is what keeps the event signalled.
#pragma once

#include <CoreServices/CoreServices.h>

#include "platform/synchronization/SynchronizationEvent.h"

namespace dovrel {

class MacOSXSynchronizationEvent : public SynchronizationEvent {
  public:
    /// Both arguments are taken for the sake of other platforms and change nothing. Throws a SystemException
    /// when the system has no event left.
    MacOSXSynchronizationEvent(bool manualReset, bool initiallySignalled);

    bool wait(int32_t timeoutMilliseconds) override;

    void signal() override;
    void reset() override;

  private:
    // The destructor leaves the event group alone: a waiter that the owner overlooked goes on waiting instead
    // of taking the end of the object for its signal.
    MPEventID event_ = kInvalidID;
};

}  // namespace dovrel

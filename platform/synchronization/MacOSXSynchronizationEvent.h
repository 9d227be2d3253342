// MacOSXSynchronizationEvent: an event implemented with an event group of Multiprocessing Services. Deleting
// the group signals the event.
//
// MPSetEvent, the platform's own way to signal, releases only one waiter. Deleting the group releases all
// waiters. A wait on the identifier of a deleted group fails at once, so the event stays signalled.
#pragma once

#include <CoreServices/CoreServices.h>

#include "platform/synchronization/SynchronizationEvent.h"

namespace dovrel {

class MacOSXSynchronizationEvent : public SynchronizationEvent {
  public:
    /// Ignores both arguments, which exist for other platforms. Throws a SystemException if the system cannot
    /// create an event.
    MacOSXSynchronizationEvent(bool manualReset, bool initiallySignalled);

    bool wait(int32_t timeoutMilliseconds) override;

    void signal() override;
    void reset() override;

  private:
    // The destructor does not delete the event group, because that would look like a signal to a thread that
    // still waits. Such a thread keeps waiting.
    MPEventID event_ = kInvalidID;
};

}  // namespace dovrel

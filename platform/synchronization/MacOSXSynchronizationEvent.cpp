#include "platform/synchronization/MacOSXSynchronizationEvent.h"

#include "platform/SystemException.h"

namespace dovrel {

namespace {

MPEventID createEvent(const char* location) {
    MPEventID event = kInvalidID;
    if (_MPIsFullyInitialized() && MPCreateEvent(&event) == noErr) return event;
    throw new SystemException(location, " Can not create MacOSXSynchronizationEvent", 0);
}

}  // namespace

MacOSXSynchronizationEvent::MacOSXSynchronizationEvent(bool /*manualReset*/, bool /*initiallySignalled*/)
    : event_(createEvent("391FF30B01BC")) {}

bool MacOSXSynchronizationEvent::wait(int32_t timeoutMilliseconds) {
    const Duration timeout = timeoutMilliseconds == kWaitForever ? kDurationForever : kDurationImmediate;
    MPEventFlags flags = 0;
    return MPWaitForEvent(event_, &flags, timeout) != kMPTimeoutErr;
}

void MacOSXSynchronizationEvent::signal() {
    MPDeleteEvent(event_);
}

void MacOSXSynchronizationEvent::reset() {
    event_ = createEvent("391FE75101BA");
}

}  // namespace dovrel

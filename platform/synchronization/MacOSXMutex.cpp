#include "platform/synchronization/MacOSXMutex.h"

#include "platform/SystemException.h"

namespace dovrel {

MacOSXMutex::MacOSXMutex() {
    if (_MPIsFullyInitialized() && MPCreateSemaphore(1, 1, &semaphore_) == noErr) return;
    throw new SystemException("MacOSXMutex::MacOSXMutex", " Can not create MacOSXMutex", 0);
}

MacOSXMutex::~MacOSXMutex() {
    if (semaphore_ != kInvalidID) MPDeleteSemaphore(semaphore_);
}

bool MacOSXMutex::wait(int32_t timeoutMilliseconds) {
    return lock(timeoutMilliseconds);
}

bool MacOSXMutex::lock(int32_t timeoutMilliseconds) {
    if (semaphore_ == kInvalidID) return false;
    const Duration timeout =
        timeoutMilliseconds == kWaitForever ? Duration{kDurationForever} : timeoutMilliseconds;
    return MPWaitOnSemaphore(semaphore_, timeout) == noErr;
}

bool MacOSXMutex::unlock() {
    if (semaphore_ == kInvalidID) return false;
    return MPSignalSemaphore(semaphore_) == noErr;
}

}  // namespace dovrel

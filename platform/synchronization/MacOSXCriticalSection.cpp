#include "platform/synchronization/MacOSXCriticalSection.h"

#include "platform/SystemException.h"

namespace dovrel {

MacOSXCriticalSection::MacOSXCriticalSection() {
    if (_MPIsFullyInitialized() && MPCreateCriticalRegion(&region_) == noErr) return;
    throw new SystemException("MacOSXCriticalSection::MacOSXCriticalSection",
                              " Can not create MacOSXCriticalSection", 0);
}

MacOSXCriticalSection::~MacOSXCriticalSection() {
    if (region_ != kInvalidID) MPDeleteCriticalRegion(region_);
}

bool MacOSXCriticalSection::wait(int32_t /*timeoutMilliseconds*/) {
    throw "Missing system specific implementation for function 'virtual bool wait()'";
}

void MacOSXCriticalSection::enter() {
    MPEnterCriticalRegion(region_, kDurationForever);
}

void MacOSXCriticalSection::leave() {
    MPExitCriticalRegion(region_);
}

}  // namespace dovrel

#include "platform/synchronization/SynchronizationFactory.h"

#include "platform/synchronization/MacOSXCriticalSection.h"
#include "platform/synchronization/MacOSXMutex.h"
#include "platform/synchronization/MacOSXSynchronizationEvent.h"

namespace dovrel {

std::unique_ptr<Mutex> createMutex() {
    return std::make_unique<MacOSXMutex>();
}

std::unique_ptr<CriticalSection> createCriticalSection() {
    return std::make_unique<MacOSXCriticalSection>();
}

std::unique_ptr<SynchronizationEvent> createSynchronizationEvent(bool manualReset, bool initiallySignalled) {
    return std::make_unique<MacOSXSynchronizationEvent>(manualReset, initiallySignalled);
}

}  // namespace dovrel

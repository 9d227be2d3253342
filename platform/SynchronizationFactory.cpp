#include "platform/SynchronizationFactory.h"

#include "platform/MacOSXCriticalSection.h"
#include "platform/MacOSXMutex.h"
#include "platform/MacOSXSynchronizationEvent.h"

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

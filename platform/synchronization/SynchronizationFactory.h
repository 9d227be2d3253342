// Makes the synchronization objects of the platform. The caller owns what it gets; failures are a
// SystemException.
#pragma once

#include <memory>

#include "platform/synchronization/CriticalSection.h"
#include "platform/synchronization/Mutex.h"
#include "platform/synchronization/SynchronizationEvent.h"

namespace dovrel {

std::unique_ptr<Mutex> createMutex();

std::unique_ptr<CriticalSection> createCriticalSection();

/// The event starts armed whatever the arguments say.
std::unique_ptr<SynchronizationEvent> createSynchronizationEvent(bool manualReset, bool initiallySignalled);

}  // namespace dovrel

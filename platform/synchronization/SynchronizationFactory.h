// Creates the synchronization objects of the platform. The caller owns them. Every function throws a
// SystemException if the system cannot create the object.
#pragma once

#include <memory>

#include "platform/synchronization/CriticalSection.h"
#include "platform/synchronization/Mutex.h"
#include "platform/synchronization/SynchronizationEvent.h"

namespace dovrel {

std::unique_ptr<Mutex> createMutex();

std::unique_ptr<CriticalSection> createCriticalSection();

/// The event is not signalled at first, whatever the arguments are.
std::unique_ptr<SynchronizationEvent> createSynchronizationEvent(bool manualReset, bool initiallySignalled);

}  // namespace dovrel

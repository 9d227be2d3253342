// SynchronizationObject: the base class of the objects that threads wait on.
//
// The functions of SynchronizationFactory.h create the objects, and their caller owns them. Any thread may
// use them. An object must not be deleted during a call on it.
#pragma once

#include <cstdint>

namespace dovrel {

/// The time-out that never ends. All time-outs are in milliseconds.
constexpr int32_t kWaitForever = -1;

class SynchronizationObject {
  public:
    SynchronizationObject() = default;
    SynchronizationObject(const SynchronizationObject&) = delete;
    SynchronizationObject& operator=(const SynchronizationObject&) = delete;
    virtual ~SynchronizationObject() = default;

    /// Waits for the object. Returns whether it was obtained. The derived classes say what "obtained" means
    /// and which time-outs they support.
    virtual bool wait(int32_t timeoutMilliseconds) = 0;
};

}  // namespace dovrel

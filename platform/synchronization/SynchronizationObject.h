// SynchronizationObject: what every object that threads wait on has in common.
//
// The objects are made by the functions of SynchronizationFactory.h and owned by whoever made them. They may
// be used by any thread, but must outlive every call on them.
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

    /// Whether the object was obtained; the derived classes say what that means and which time-outs they
    /// know.
    virtual bool wait(int32_t timeoutMilliseconds) = 0;
};

}  // namespace dovrel

// EventDescriptor: owns an Apple event descriptor for the duration of one operation. The destructor
// disposes of it.
#pragma once

#include <Carbon/Carbon.h>

namespace dovrel {

class EventDescriptor {
  public:
    EventDescriptor() = default;
    EventDescriptor(const EventDescriptor&) = delete;
    EventDescriptor& operator=(const EventDescriptor&) = delete;
    ~EventDescriptor() {
        if (descriptor_.descriptorType != typeNull) AEDisposeDesc(&descriptor_);
    }

    /// Returns the descriptor. It is null (typeNull, without data) until a platform call fills it.
    AEDesc* get() { return &descriptor_; }

  private:
    AEDesc descriptor_ = {typeNull, nullptr};
};

}  // namespace dovrel

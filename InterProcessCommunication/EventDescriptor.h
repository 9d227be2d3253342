// An Apple event descriptor that lives as long as one operation and is disposed of with it, however the
// operation ends.
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

    /// Null (typeNull, without data) until a call of the platform fills it.
    AEDesc* get() { return &descriptor_; }

  private:
    AEDesc descriptor_ = {typeNull, nullptr};
};

}  // namespace dovrel

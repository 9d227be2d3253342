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
    ~EventDescriptor() { dispose(); }

    /// Null (typeNull, without data) until a call of the platform fills it.
    AEDesc* get() { return &descriptor_; }
    const AEDesc* get() const { return &descriptor_; }

    bool holdsData() const { return descriptor_.descriptorType != typeNull; }

    /// Makes it null again. Nothing for one that is null already.
    void dispose() {
        if (holdsData()) AEDisposeDesc(&descriptor_);
    }

  private:
    AEDesc descriptor_ = {typeNull, nullptr};
};

}  // namespace dovrel

// CFObject: owns one reference to a Core Foundation object and releases it at the end of the scope.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

namespace dovrel {

template <class Reference>
class CFObject {
  public:
    /// Takes ownership of `reference`, which the caller must own. It may be null.
    explicit CFObject(Reference reference) : reference_(reference) {}
    CFObject(const CFObject&) = delete;
    CFObject& operator=(const CFObject&) = delete;

    ~CFObject() {
        if (reference_ != nullptr) CFRelease(reference_);
    }

    explicit operator bool() const { return reference_ != nullptr; }
    Reference get() const { return reference_; }

  private:
    Reference reference_;
};

}  // namespace dovrel

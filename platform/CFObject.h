// CFObject: one owned reference to a Core Foundation object, given back at the end of the scope.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

namespace dovrel {

template <class Reference>
class CFObject {
  public:
    /// Takes over a reference that the caller owns; null is allowed.
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

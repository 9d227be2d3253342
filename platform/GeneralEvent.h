// GeneralEvent: the root of what the parts of the library tell each other.
#pragma once

#include <cstdint>

namespace dovrel {

class GeneralEvent {
  public:
    virtual ~GeneralEvent() = default;

    /// One fixed number per class.
    virtual uint32_t eventKind() const { return 0; }
};

}  // namespace dovrel

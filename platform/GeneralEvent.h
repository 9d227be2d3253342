// GeneralEvent: the base class of the events that parts of the library send to each other.
#pragma once

#include <cstdint>

namespace dovrel {

class GeneralEvent {
  public:
    virtual ~GeneralEvent() = default;

    /// Returns a fixed number that is different for each class.
    virtual uint32_t eventKind() const { return 0; }
};

}  // namespace dovrel

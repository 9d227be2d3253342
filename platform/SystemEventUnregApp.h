// SystemEventUnregApp: the event that an application was unregistered.
#pragma once

#include "platform/GeneralEvent.h"

namespace dovrel {

class SystemEventUnregApp : public GeneralEvent {
  public:
    /// `value` identifies the application that was unregistered.
    explicit SystemEventUnregApp(uint32_t value) : value_(value) {}

    uint32_t eventKind() const override { return 1; }

    uint32_t getValue() const { return value_; }

  private:
    uint32_t value_;
};

}  // namespace dovrel

// Sends an event to its target. Private to the layer.
#pragma once

#include <CoreServices/AEDataModel.h>

#include "portability/transport/Connection.h"

namespace portability {

/// The common part of AESend and AESendMessage; their comments describe it. `reply` and `idle` may be null.
/// Does not change errno. Throws nothing.
OSStatus sendEvent(const AppleEvent* event, AppleEvent* reply, AESendMode mode, long timeOutInTicks,
                   IdleCaller* idle);

}  // namespace portability

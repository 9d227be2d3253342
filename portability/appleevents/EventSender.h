// Sending an event to wherever its address leads. Private to the layer.
#pragma once

#include <CoreServices/AEDataModel.h>

#include "portability/transport/Connection.h"

namespace portability {

/// What AESend and AESendMessage have in common: see there. `reply` and `idle` may be null. Keeps errno,
/// throws nothing.
OSStatus sendEvent(const AppleEvent* event, AppleEvent* reply, AESendMode mode, long timeOutInTicks,
                   IdleCaller* idle);

}  // namespace portability

// Calls the handlers of events. Private to the layer.
#pragma once

#include <CoreServices/AppleEvents.h>

#include "portability/appleevents/EventStorage.h"

namespace portability {

/// Calls the handlers for the event on this thread, the most specific first, until one returns a result other
/// than errAEEventNotHandled. The handler fills `reply`, which is null if the sender wants no reply.
///
/// Any other error of the handler is stored in the reply as keyErrorNumber. An exception counts as
/// errAEEventFailed. Returns the result for the sender's call: noErr, errAEEventNotHandled if no handler
/// handled the event, or memFullErr.
OSErr dispatchEvent(EventStorage& event, EventStorage* reply);

/// Makes `reply` the reply to `event`: 'aevt'/'ansr' with the event's return ID and transaction ID. Returns
/// noErr or memFullErr.
OSErr prepareReply(const EventStorage& event, EventStorage& reply);

}  // namespace portability

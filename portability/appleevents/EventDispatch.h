// From an event to its handler. Private to the layer.
#pragma once

#include <CoreServices/AppleEvents.h>

#include "portability/appleevents/EventStorage.h"

namespace portability {

/// Calls the handler for the event, on this thread, and lets it fill `reply`; null: the sender wants none. A
/// less specific handler follows one that answers errAEEventNotHandled. Any other error of a handler goes
/// into the reply as keyErrorNumber, and so does errAEEventFailed for one that throws. The result is for the
/// sender's call: noErr, or errAEEventNotHandled.
OSErr dispatchEvent(EventStorage& event, EventStorage* reply);

/// Makes `reply` the reply to `event`: 'aevt'/'ansr' with the event's identifiers. memFullErr.
OSErr prepareReply(const EventStorage& event, EventStorage& reply);

}  // namespace portability

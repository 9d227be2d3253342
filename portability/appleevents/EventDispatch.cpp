#include "portability/appleevents/EventDispatch.h"

#include <CoreServices/MacErrors.h>

#include "portability/appleevents/HandlerTable.h"

namespace portability {

namespace {

OSErr callHandler(const HandlerTable::Entry& entry, const AppleEvent& event, AppleEvent& reply) {
    // An exception of a handler must not leave the event loop.
    try {
        return entry.handler(&event, &reply, entry.refcon);
    } catch (...) {
        return errAEEventFailed;
    }
}

OSErr callHandlers(EventStorage& event, AppleEvent& reply) {
    const AppleEvent descriptor{typeAppleEvent, event.handle()};
    const AEEventClass eventClass = event.imageNumber(keyEventClassAttr);
    const AEEventID eventID = event.imageNumber(keyEventIDAttr);
    for (const HandlerTable::Entry& entry : HandlerTable::shared().handlersFor(eventClass, eventID)) {
        const OSErr result = callHandler(entry, descriptor, reply);
        if (result != errAEEventNotHandled) return result;
    }
    return errAEEventNotHandled;
}

}  // namespace

OSErr dispatchEvent(EventStorage& event, EventStorage* reply) {
    AppleEvent descriptor{typeNull, nullptr};
    if (reply != nullptr) descriptor = {typeAppleEvent, reply->handle()};
    const OSErr result = callHandlers(event, descriptor);
    if (result == errAEEventNotHandled) return result;
    if (result == noErr || reply == nullptr) return noErr;
    const SInt32 number = result;
    return reply->put(ItemKind::parameter, keyErrorNumber, typeSInt32, &number, sizeof number);
}

OSErr prepareReply(const EventStorage& event, EventStorage& reply) {
    return reply.addNumbers({{keyEventClassAttr, typeType, kCoreEventClass},
                             {keyEventIDAttr, typeType, kAEAnswer},
                             {keyReturnIDAttr, typeSInt32, event.imageNumber(keyReturnIDAttr)},
                             {keyTransactionIDAttr, typeSInt32, event.imageNumber(keyTransactionIDAttr)}});
}

}  // namespace portability

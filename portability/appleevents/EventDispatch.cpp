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
    const AEEventClass eventClass = event.fourBytes(keyEventClassAttr);
    const AEEventID eventID = event.fourBytes(keyEventIDAttr);
    for (const HandlerTable::Entry& entry : HandlerTable::shared().handlersFor(eventClass, eventID)) {
        const OSErr result = callHandler(entry, descriptor, reply);
        if (result != errAEEventNotHandled) return result;
    }
    return errAEEventNotHandled;
}

OSErr copyNumber(const EventStorage& event, EventStorage& reply, AEKeyword attribute) {
    const UInt32 number = event.fourBytes(attribute);
    return reply.put(ItemKind::attribute, attribute, typeSInt32, &number, sizeof number);
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
    const UInt32 replyClass = kCoreEventClass;
    const UInt32 replyID = kAEAnswer;
    OSErr error = reply.put(ItemKind::attribute, keyEventClassAttr, typeType, &replyClass, sizeof replyClass);
    if (error == noErr)
        error = reply.put(ItemKind::attribute, keyEventIDAttr, typeType, &replyID, sizeof replyID);
    if (error == noErr) error = copyNumber(event, reply, keyReturnIDAttr);
    if (error == noErr) error = copyNumber(event, reply, keyTransactionIDAttr);
    return error;
}

}  // namespace portability

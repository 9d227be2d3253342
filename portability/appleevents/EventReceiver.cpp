#include "portability/appleevents/EventReceiver.h"

#include <CoreServices/AppleEvents.h>
#include <CoreServices/MacErrors.h>

#include "portability/appleevents/EventDispatch.h"
#include "portability/appleevents/EventStorage.h"

namespace portability {

namespace {

constexpr AESendMode kReplyModeMask = 0x03;

// Returns the result for the sender's call.
OSStatus runHandlers(EventStorage& event, EventStorage* reply) {
    if (reply != nullptr && prepareReply(event, *reply) != noErr) return memFullErr;
    return dispatchEvent(event, reply);
}

}  // namespace

bool EventReceiver::handle(const ReceivedFrame& request, pid_t sender, ReplySender& reply) {
    const FrameHeader& header = request.header;
    EventStorage event(request.image, header.imageSize, request.block);
    if (!event.isWhole()) return false;
    event.setDelivery({sender, kAELocalProcess, header.sendMode, header.timeOutInTicks});
    if ((header.sendMode & kReplyModeMask) != kAEWaitReply) {
        runHandlers(event, nullptr);
        return true;
    }
    EventStorage replyEvent;
    const OSStatus result = runHandlers(event, &replyEvent);
    if (event.isSuspended()) return true;
    MessageMemory nothing;
    Channel::Sent sent =
        reply.send(static_cast<int32_t>(result), result == noErr ? replyEvent.image() : nothing);
    if (sent == Channel::Sent::failed) sent = reply.send(memFullErr, nothing);
    return sent == Channel::Sent::done;
}

}  // namespace portability

#include "server/SelfEvent.h"

#include "InterProcessCommunication/POS_to_Client_Communicator.h"

namespace merrowd {

bool sendToSelf(const EventKind& kind) {
    const dovrel::POS_to_Client_Communicator channel;
    AppleEvent event = {typeNull, nullptr};
    if (channel.CreateEvent(kind.eventClass, kind.eventId, &event) != noErr) return false;
    const OSStatus status =
        AESendMessage(&event, nullptr, kAENoReply, dovrel::serverEvent::kQuitTimeOutTicks);
    AEDisposeDesc(&event);
    return status == noErr;
}

}  // namespace merrowd

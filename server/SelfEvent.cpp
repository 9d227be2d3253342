#include "server/SelfEvent.h"

#include "InterProcessCommunication/EventDescriptor.h"
#include "InterProcessCommunication/POS_to_Client_Communicator.h"

namespace merrowd {

bool sendToSelf(const EventKind& kind) {
    const dovrel::POS_to_Client_Communicator channel;
    dovrel::EventDescriptor event;
    if (channel.CreateEvent(kind.eventClass, kind.eventId, event.get()) != noErr) return false;
    return AESendMessage(event.get(), nullptr, kAENoReply, dovrel::serverEvent::kQuitTimeOutTicks) == noErr;
}

}  // namespace merrowd

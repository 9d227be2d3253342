#include <CoreServices/AEMach.h>

#include "portability/appleevents/EventSender.h"

OSStatus AESendMessage(const AppleEvent* event, AppleEvent* reply, AESendMode sendMode, long timeOutInTicks) {
    return portability::sendEvent(event, reply, sendMode, timeOutInTicks, nullptr);
}

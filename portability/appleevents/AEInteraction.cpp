#include <Carbon/AEInteraction.h>
#include <CoreServices/MacErrors.h>

#include <algorithm>

#include "portability/appleevents/EventSender.h"
#include "portability/appleevents/EventStorage.h"

namespace {

// Calls the sender's idle procedure with a null event. In a process without windows there are no
// other events.
class IdleProcCaller final : public portability::IdleCaller {
  public:
    explicit IdleProcCaller(AEIdleUPP procedure) : procedure_(procedure) {}

    std::chrono::nanoseconds pause() const override {
        const int64_t ticks = std::clamp<int64_t>(sleepTicks_, 1, kLongestSleep);
        return std::chrono::nanoseconds(std::chrono::seconds(ticks)) / kTicksPerSecond;
    }

    bool call() override {
        EventRecord nullEvent{};
        RgnHandle mouseRegion = nullptr;
        return procedure_(&nullEvent, &sleepTicks_, &mouseRegion) != 0;
    }

  private:
    static constexpr int64_t kTicksPerSecond = 60;
    static constexpr int64_t kLongestSleep = 60 * kTicksPerSecond;

    AEIdleUPP procedure_;
    SInt32 sleepTicks_ = 1;  // the idle procedure sets it at each call
};

}  // namespace

OSErr AESend(const AppleEvent* theAppleEvent, AppleEvent* reply, AESendMode sendMode,
             AESendPriority /*sendPriority*/, SInt32 timeOutInTicks, AEIdleUPP idleProc,
             AEFilterUPP /*filterProc*/) {
    IdleProcCaller idle(idleProc);
    portability::IdleCaller* caller = idleProc == nullptr ? nullptr : &idle;
    return static_cast<OSErr>(portability::sendEvent(theAppleEvent, reply, sendMode, timeOutInTicks, caller));
}

OSErr AESuspendTheCurrentEvent(const AppleEvent* theAppleEvent) {
    const portability::EventStorage* event = portability::DescriptorStorage::getEvent(theAppleEvent);
    if (event == nullptr) return errAENotAEDesc;
    event->suspend();
    return noErr;
}

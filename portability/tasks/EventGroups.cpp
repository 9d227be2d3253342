#include <CoreServices/Multiprocessing.h>

#include <utility>

#include "portability/tasks/HandlePool.h"
#include "portability/tasks/WaitQueue.h"

namespace {

struct EventGroup {
    MPEventFlags flags = 0;
    portability::WaitQueue waiters;
};

// Never destroyed, because tasks may still be running while the process exits.
portability::HandlePool<EventGroup>& events() {
    static auto& pool = *new portability::HandlePool<EventGroup>;
    return pool;
}

auto find(MPEventID id) {
    return events().find(reinterpret_cast<uintptr_t>(id));
}

}  // namespace

OSStatus MPCreateEvent(MPEventID* event) {
    if (event == nullptr) return paramErr;
    const uintptr_t id = events().create({});
    if (id == 0) return kMPInsufficientResourcesErr;
    *event = reinterpret_cast<MPEventID>(id);
    return noErr;
}

OSStatus MPDeleteEvent(MPEventID event) {
    auto group = find(event);
    if (!group) return kMPInvalidIDErr;
    group->waiters.releaseAll(kMPDeletedErr);
    events().remove(std::move(group));
    return noErr;
}

OSStatus MPSetEvent(MPEventID event, MPEventFlags flags) {
    auto group = find(event);
    if (!group) return kMPInvalidIDErr;
    group->flags |= flags;
    portability::Waiter* waiter = group->waiters.oldest();
    if (group->flags == 0 || waiter == nullptr) return noErr;
    waiter->flags = std::exchange(group->flags, 0);
    group->waiters.releaseOldest(noErr);
    return noErr;
}

OSStatus MPWaitForEvent(MPEventID event, MPEventFlags* flags, Duration timeout) {
    auto group = find(event);
    if (!group) return kMPInvalidIDErr;
    portability::Waiter waiter;
    OSStatus outcome = noErr;
    if (group->flags != 0) {
        waiter.flags = std::exchange(group->flags, 0);
    } else {
        outcome = group->waiters.wait(group.lock(), timeout, waiter);
    }
    if (outcome == noErr && flags != nullptr) *flags = waiter.flags;
    return outcome;
}

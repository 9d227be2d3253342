#include <CoreServices/Multiprocessing.h>

#include "portability/tasks/HandlePool.h"
#include "portability/tasks/WaitQueue.h"

namespace {

struct Semaphore {
    MPSemaphoreCount maximum = 0;
    MPSemaphoreCount count = 0;
    portability::WaitQueue waiters;
};

// Never destroyed, because tasks may still be running while the process exits.
portability::HandlePool<Semaphore>& semaphores() {
    static auto& pool = *new portability::HandlePool<Semaphore>;
    return pool;
}

auto find(MPSemaphoreID id) {
    return semaphores().find(reinterpret_cast<uintptr_t>(id));
}

}  // namespace

OSStatus MPCreateSemaphore(MPSemaphoreCount maximumValue, MPSemaphoreCount initialValue,
                           MPSemaphoreID* semaphore) {
    if (semaphore == nullptr || initialValue > maximumValue) return paramErr;
    const uintptr_t id = semaphores().create({maximumValue, initialValue, {}});
    if (id == 0) return kMPInsufficientResourcesErr;
    *semaphore = reinterpret_cast<MPSemaphoreID>(id);
    return noErr;
}

OSStatus MPDeleteSemaphore(MPSemaphoreID semaphore) {
    auto found = find(semaphore);
    if (!found) return kMPInvalidIDErr;
    found->waiters.releaseAll(kMPDeletedErr);
    semaphores().remove(std::move(found));
    return noErr;
}

OSStatus MPWaitOnSemaphore(MPSemaphoreID semaphore, Duration timeout) {
    auto found = find(semaphore);
    if (!found) return kMPInvalidIDErr;
    if (found->count > 0) {
        --found->count;
        return noErr;
    }
    portability::Waiter waiter;
    return found->waiters.wait(found.lock(), timeout, waiter);
}

OSStatus MPSignalSemaphore(MPSemaphoreID semaphore) {
    auto found = find(semaphore);
    if (!found) return kMPInvalidIDErr;
    if (found->waiters.oldest() != nullptr) {
        found->waiters.releaseOldest(noErr);
        return noErr;
    }
    if (found->count == found->maximum) return kMPInsufficientResourcesErr;
    ++found->count;
    return noErr;
}

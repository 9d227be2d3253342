#include <CoreServices/Multiprocessing.h>

#include <thread>

#include "portability/tasks/HandlePool.h"
#include "portability/tasks/WaitQueue.h"

namespace {

struct CriticalRegion {
    std::thread::id owner;    // default value while the region is free
    unsigned long depth = 0;  // number of times that the owner has entered
    portability::WaitQueue waiters;
};

// Never destroyed, because tasks may still be running while the process exits.
portability::HandlePool<CriticalRegion>& regions() {
    static auto& pool = *new portability::HandlePool<CriticalRegion>;
    return pool;
}

auto find(MPCriticalRegionID id) {
    return regions().find(reinterpret_cast<uintptr_t>(id));
}

}  // namespace

OSStatus MPCreateCriticalRegion(MPCriticalRegionID* criticalRegion) {
    if (criticalRegion == nullptr) return paramErr;
    const uintptr_t id = regions().create({});
    if (id == 0) return kMPInsufficientResourcesErr;
    *criticalRegion = reinterpret_cast<MPCriticalRegionID>(id);
    return noErr;
}

OSStatus MPDeleteCriticalRegion(MPCriticalRegionID criticalRegion) {
    auto region = find(criticalRegion);
    if (!region) return kMPInvalidIDErr;
    region->waiters.releaseAll(kMPDeletedErr);
    regions().remove(std::move(region));
    return noErr;
}

OSStatus MPEnterCriticalRegion(MPCriticalRegionID criticalRegion, Duration timeout) {
    auto region = find(criticalRegion);
    if (!region) return kMPInvalidIDErr;
    const std::thread::id caller = std::this_thread::get_id();
    if (region->depth == 0 || region->owner == caller) {
        region->owner = caller;
        ++region->depth;
        return noErr;
    }
    portability::Waiter waiter;
    return region->waiters.wait(region.lock(), timeout, waiter);
}

OSStatus MPExitCriticalRegion(MPCriticalRegionID criticalRegion) {
    auto region = find(criticalRegion);
    if (!region) return kMPInvalidIDErr;
    if (region->depth == 0 || region->owner != std::this_thread::get_id()) return kMPInsufficientResourcesErr;
    if (--region->depth > 0) return noErr;
    if (const portability::Waiter* next = region->waiters.oldest()) {
        region->owner = next->thread;
        region->depth = 1;
        region->waiters.releaseOldest(noErr);
    }
    return noErr;
}

#include "portability/transport/LargeMemory.h"

#include <atomic>
#include <chrono>
#include <exception>
#include <thread>

#include "portability/posix/AllSignalsBlock.h"
#include "portability/posix/ErrnoKeeper.h"
#include "portability/posix/ProcessMark.h"
#include "portability/transport/ConnectionPool.h"
#include "portability/transport/SharedBlock.h"

namespace portability {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kDelay{1};

std::atomic<Clock::rep> lastCall{0};
// processMark() of the process that has the thread, or 0. A forked process does not have its parent's thread.
std::atomic<uint32_t> threadOwner{0};

// Returns whether this process had no thread. If so, the caller must start one.
bool claimThread() {
    uint32_t owner = threadOwner.load();
    return owner != processMark() && threadOwner.compare_exchange_strong(owner, processMark());
}

// Waits until there was no call for the time of the delay. Returns the time of the last call.
Clock::rep waitForQuiet() {
    for (;;) {
        const Clock::rep last = lastCall.load();
        const Clock::time_point end = Clock::time_point(Clock::duration(last)) + kDelay;
        if (Clock::now() >= end) return last;
        std::this_thread::sleep_until(end);
    }
}

void run() {
    Clock::rep freed;
    do {
        freed = waitForQuiet();
        SharedBlock::freeUnusedLargeBlocks();
        releaseRepliesOfKeptConnections();
        threadOwner.store(0);
        // A call before the last line has not started a thread.
    } while (lastCall.load() != freed && claimThread());
}

}  // namespace

void freeLargeMemoryLater() noexcept {
    const ErrnoKeeper errnoKeeper;
    lastCall.store(Clock::now().time_since_epoch().count());
    if (!claimThread()) return;
    try {
        const AllSignalsBlock block;
        std::thread(run).detach();
    } catch (const std::exception&) {
        threadOwner.store(0);
    }
}

}  // namespace portability

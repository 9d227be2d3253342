// Shared memory; a side that waits sleeps in the kernel.
#include <linux/futex.h>
#include <sys/syscall.h>

#include <climits>

#include "SharedMailbox.h"

namespace dovrel::benchmarks {

namespace {

struct FutexWait {
    static void until(std::atomic<uint32_t>& state, uint32_t value) {
        for (;;) {
            const uint32_t now = state.load();
            if (now == value || now == Mailbox::kClosed) return;
            syscall(SYS_futex, &state, FUTEX_WAIT, now, nullptr, nullptr, 0);
        }
    }
    static void tell(std::atomic<uint32_t>& state, uint32_t value) {
        state.store(value);
        syscall(SYS_futex, &state, FUTEX_WAKE, INT_MAX, nullptr, nullptr, 0);
    }
};

}  // namespace

const Peer kPeer = mailboxPeer<FutexWait>(false);

}  // namespace dovrel::benchmarks

// Shared memory; a side that waits looks at the state again and again. Makes no system call.
#include "SharedMailbox.h"

namespace dovrel::benchmarks {

namespace {

void relax() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#elif defined(__aarch64__)
    asm volatile("yield");
#endif
}

struct SpinWait {
    static void until(const std::atomic<uint32_t>& state, uint32_t value) {
        for (;;) {
            const uint32_t now = state.load(std::memory_order_acquire);
            if (now == value || now == Mailbox::kClosed) return;
            relax();
        }
    }
    static void tell(std::atomic<uint32_t>& state, uint32_t value) {
        state.store(value, std::memory_order_release);
    }
};

}  // namespace

const Peer kPeer = mailboxPeer<SpinWait>(true);

}  // namespace dovrel::benchmarks

#include "portability/posix/FileSizeSignalBlock.h"

#include <time.h>

#include "portability/posix/ErrnoKeeper.h"

namespace portability {

namespace {

sigset_t fileSizeSignal() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGXFSZ);
    return signals;
}

bool isPending() {
    sigset_t pending;
    return sigpending(&pending) == 0 && sigismember(&pending, SIGXFSZ) == 1;
}

}  // namespace

FileSizeSignalBlock::FileSizeSignalBlock() {
    const sigset_t signals = fileSizeSignal();
    pthread_sigmask(SIG_BLOCK, &signals, &before_);
    wasPending_ = isPending();
}

FileSizeSignalBlock::~FileSizeSignalBlock() {
    const ErrnoKeeper errnoKeeper;
    const sigset_t signals = fileSizeSignal();
    const timespec atOnce{0, 0};
    // A signal that was pending before belongs to the host, which has blocked it itself.
    if (!wasPending_ && isPending()) sigtimedwait(&signals, nullptr, &atOnce);
    pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

}  // namespace portability

#include "server/RunningProcess.h"

#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>

#include "server/SelfEvent.h"

namespace merrowd {

namespace {

sigset_t endingSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    return signals;
}

}  // namespace

RunningProcess::RunningProcess() {
    // The process keeps the launcher's hard limit of file sizes. With the signal ignored, a write to a log that
    // would exceed the limit only fails.
    signal(SIGXFSZ, SIG_IGN);
    const sigset_t signals = endingSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    taker_ = std::thread([this] { takeSignals(); });
}

RunningProcess::~RunningProcess() {
    over_ = true;
    pthread_kill(taker_.native_handle(), SIGTERM);
    taker_.join();
}

void RunningProcess::takeSignals() {
    const sigset_t signals = endingSignals();
    for (;;) {
        int number = 0;
        if (sigwait(&signals, &number) != 0 || over_) return;
        // After a second signal, the server does not wait for the running exchange.
        if (signal_ != 0) _exit(EXIT_FAILURE);
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            signal_ = number;
        }
        changed_.notify_all();
        // If the event cannot be sent, the server has no endpoint yet: the event loop does not run, and
        // no client is being served.
        if (!sendToSelf(kQuitEvent)) _exit(EXIT_SUCCESS);
    }
}

void RunningProcess::pause(std::chrono::milliseconds time) {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait_for(lock, time, [this] { return signal_ != 0; });
}

void RunningProcess::hang() {
    std::unique_lock<std::mutex> lock(mutex_);
    changed_.wait(lock, [this] { return signal_ != 0; });
}

void RunningProcess::vanish() {
    kill(getpid(), SIGKILL);
    _exit(EXIT_FAILURE);
}

}  // namespace merrowd

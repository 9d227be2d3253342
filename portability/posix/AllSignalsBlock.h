// Keeps signals away from threads of the layer. Private to the layer.
#pragma once

#include <pthread.h>
#include <signal.h>

namespace portability {

/// While it exists, this thread takes no signal. For use around the start of a thread, which inherits the mask of
/// its creator and must take no signal of the application.
class AllSignalsBlock {
  public:
    AllSignalsBlock() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    AllSignalsBlock(const AllSignalsBlock&) = delete;
    AllSignalsBlock& operator=(const AllSignalsBlock&) = delete;
    ~AllSignalsBlock() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

  private:
    sigset_t before_;
};

}  // namespace portability

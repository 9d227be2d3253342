// Calls on their way from other threads to a loop on the main thread. Private to the layer.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace portability {

/// All members may be called from any thread. They throw nothing, and the procedures must not either.
class CallQueue {
  public:
    using Procedure = void* (*)(void*);

    /// From now on calls are taken.
    void open();

    /// From now on calls are refused, and those that nobody has begun are given back to their callers.
    void close();

    bool isOpen() const;

    /// Queues `procedure(parameter)`, calls `wakeLoop` and waits until the call has returned; `result`
    /// receives what it returned.
    ///
    /// Returns false, without having run the procedure and with `result` left alone, if the queue is closed,
    /// or if it is closed or a second passes before the call is begun. A main thread that is inside its loop
    /// may still be unable to serve it: it may wait for a lock that the caller holds, or run its loop in a
    /// mode that does not look at the queue.
    bool run(Procedure procedure, void* parameter, void** result, void (*wakeLoop)());

    /// Whether a call waits to be begun. Takes no lock.
    bool hasCalls() const { return oldest_.load() != nullptr; }

    /// Runs the oldest call, if there is one, on this thread. The procedure may run a loop that serves the
    /// next one.
    void serveOldest();

  private:
    struct Call;

    void append(Call& call);
    bool remove(const Call& call);

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::atomic<Call*> oldest_{nullptr};
    bool isOpen_ = false;
};

}  // namespace portability

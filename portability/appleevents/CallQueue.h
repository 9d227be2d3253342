// A queue of calls from other threads to a loop on the main thread. Private to the layer.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace portability {

/// All members are thread-safe and throw nothing. The queued procedures must not throw either.
class CallQueue {
  public:
    using Procedure = void* (*)(void*);

    /// Opens the queue. From now on it accepts calls.
    void open();

    /// Closes the queue. From now on it rejects calls. Queued calls that have not started are returned to
    /// their callers: their run() returns false.
    void close();

    bool isOpen() const;

    /// Queues `procedure(parameter)`, calls `wakeLoop` and waits until the procedure has returned. Writes its
    /// return value to `result`.
    ///
    /// Returns false, without running the procedure and without changing `result`, in these cases:
    /// - The queue is closed, or is closed before the call starts.
    /// - The call has not started after one second.
    ///
    /// The second case can happen although the main thread is inside its loop. For example, it may wait for a
    /// lock that the caller holds, or run its loop in a mode that does not check the queue.
    bool run(Procedure procedure, void* parameter, void** result, void (*wakeLoop)());

    /// Returns whether a call in the queue has not started. Takes no lock.
    bool hasCalls() const { return oldest_.load() != nullptr; }

    /// Runs the oldest queued call, if any, on this thread. The procedure may run a nested loop that calls
    /// this function for the next one.
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

// The queue of the threads that wait in one object, longest wait first. Private to the layer.
//
// The thread that releases a waiter decides the waiter's result, under the object's mutex. A released waiter
// therefore does not access the object again, which may have been deleted. Time-outs use the monotonic clock.
#pragma once

#include <CoreServices/Multiprocessing.h>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace portability {

/// One waiting thread.
struct Waiter {
    const std::thread::id thread = std::this_thread::get_id();
    OSStatus outcome = kMPTimeoutErr;
    MPEventFlags flags = 0;  // set together with `outcome` by event groups
    bool released = false;
    std::condition_variable wakeUp;
    Waiter* next = nullptr;
};

/// All member functions must be called with the mutex of the queue's object locked.
class WaitQueue {
  public:
    /// Waits until the waiter is released and returns its outcome, or kMPTimeoutErr. `lock` must hold the
    /// object's mutex, which must outlive the object.
    OSStatus wait(std::unique_lock<std::mutex>& lock, Duration timeout, Waiter& waiter);

    /// Returns the waiter that has waited longest, or null if there is none.
    Waiter* oldest() const { return first_; }

    /// Releases the oldest waiter with `outcome`.
    void releaseOldest(OSStatus outcome);

    void releaseAll(OSStatus outcome);

  private:
    void append(Waiter& waiter);
    void remove(Waiter& waiter);

    Waiter* first_ = nullptr;
};

}  // namespace portability

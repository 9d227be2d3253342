// The threads that wait inside one object, the one that has waited longest first. Private to the layer.
//
// What a waiter gets is decided by the thread that releases it, under the object's mutex; a released waiter
// therefore needs nothing of the object any more, which may be deleted meanwhile. Time-outs hold on the
// monotonic clock.
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
    MPEventFlags flags = 0;  // handed over with the outcome, where the object has any
    bool released = false;
    std::condition_variable wakeUp;
    Waiter* next = nullptr;
};

/// Every member function is called under the mutex of the object that the queue belongs to.
class WaitQueue {
  public:
    /// Waits until the waiter is released and answers its outcome, or kMPTimeoutErr. `lock` holds the
    /// object's mutex, which must outlive the object.
    OSStatus wait(std::unique_lock<std::mutex>& lock, Duration timeout, Waiter& waiter);

    /// Null when nobody waits.
    Waiter* oldest() const { return first_; }

    /// Lets the oldest waiter go with `outcome`.
    void releaseOldest(OSStatus outcome);

    void releaseAll(OSStatus outcome);

  private:
    void append(Waiter& waiter);
    void remove(Waiter& waiter);

    Waiter* first_ = nullptr;
};

}  // namespace portability

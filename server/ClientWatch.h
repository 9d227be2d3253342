// Makes the server look after its clients once a second, because a client that was killed says no good-bye.
//
// A thread of its own sends the server an event; the looking itself is done by that event's handler, on the
// main thread, like all that touches the server's state.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace merrowd {

class ClientWatch {
  public:
    ClientWatch() = default;
    ClientWatch(const ClientWatch&) = delete;
    ClientWatch& operator=(const ClientWatch&) = delete;
    ~ClientWatch();

    /// Starts the thread, if it does not run yet. It ends with the object.
    void start();

    /// The event has been handled: the next may be sent. So a server that is held up finds one event, not
    /// hundreds.
    void done() { pending_ = false; }

  private:
    void run();

    std::thread thread_;
    std::mutex mutex_;
    std::condition_variable changed_;
    bool over_ = false;
    std::atomic<bool> pending_{false};
};

}  // namespace merrowd

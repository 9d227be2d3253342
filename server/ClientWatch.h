// ClientWatch: makes the server check once a second whether its clients still run, because a client that was
// killed does not unregister.
//
// A separate thread only sends the server an event. The handler of that event does the check on the main
// thread, because only the main thread may use the server's state.
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

    /// Starts the thread if it does not run yet. The destructor ends it.
    void start();

    /// Call this when the event has been handled; the next event may then be sent. So a server that was
    /// blocked finds one event in its queue instead of hundreds.
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

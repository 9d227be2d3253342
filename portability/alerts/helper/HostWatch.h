// Ends the alert helper when its host has gone, whatever the window is doing.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "portability/posix/FileDescriptor.h"

namespace alerthelper {

/// Watches in a thread of its own, because the thread of the window may be waiting for a window system that
/// does not reply. It ends the process without exit handlers:
///   - with kFinished if the host has closed the stream or has ended,
///   - with kBadMessage if the host sends anything,
///   - with kNotShown if the window is not on the screen in time.
class HostWatch {
  public:
    /// `stream` stays the caller's. A child of the host may keep the other end of the stream open, so the
    /// process `host` is watched as well if the kernel has pidfd_open (Linux 5.3 and later).
    HostWatch(int stream, pid_t host, std::chrono::milliseconds limitForShowing);
    HostWatch(const HostWatch&) = delete;
    HostWatch& operator=(const HostWatch&) = delete;

    /// Stops watching.
    ~HostWatch();

    /// Tells that the window is on the screen.
    void windowIsShown();

  private:
    void run();
    void checkStream() const;
    int millisecondsLeft() const;
    void wakeUp() const;

    const int stream_;
    const portability::FileDescriptor host_;
    const portability::FileDescriptor wakeUp_;
    const std::chrono::steady_clock::time_point endOfShowing_;
    std::atomic<bool> isShown_{false};
    std::atomic<bool> isStopped_{false};
    std::thread thread_;
};

}  // namespace alerthelper

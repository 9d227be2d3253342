// Ends the alert helper when its host has exited, independent of the window's state.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "portability/posix/FileDescriptor.h"

namespace alerthelper {

/// Watches the host on a separate thread, because the window's thread may be waiting for a window system that
/// does not reply. That thread ends the process without calling exit handlers:
///   - with kFinished if the host has closed the stream or has exited,
///   - with kBadMessage if the host sends any data,
///   - with kNotShown if the window is not on the screen in time.
class HostWatch {
  public:
    /// Starts watching. The caller keeps the ownership of `stream`. A child process of the host may keep the
    /// other end of the stream open. Therefore the process `host` is also watched if the kernel has
    /// pidfd_open (Linux 5.3 and later).
    HostWatch(int stream, pid_t host, std::chrono::milliseconds limitForShowing);
    HostWatch(const HostWatch&) = delete;
    HostWatch& operator=(const HostWatch&) = delete;

    /// Stops watching.
    ~HostWatch();

    /// Must be called when the window is on the screen.
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

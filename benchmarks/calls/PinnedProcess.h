// A child process on a chosen processor.
#pragma once

#include <sys/types.h>

#include <functional>

namespace dovrel::benchmarks {

constexpr int kAnyProcessor = -1;

/// Restricts the calling thread, and the threads and processes that it starts, to one processor. kAnyProcessor
/// changes nothing. Throws std::runtime_error if this process may not use the processor.
void pinToProcessor(int processor);

/// Runs a function in a child process, which ends when this process ends. This process must have one thread only.
class PinnedProcess {
  public:
    /// If `work` throws, the child prints the message and ends with status 1.
    PinnedProcess(int processor, const std::function<void()>& work);
    PinnedProcess(PinnedProcess&& other) noexcept;
    PinnedProcess& operator=(PinnedProcess&&) = delete;

    /// Sends SIGTERM, after 10 seconds SIGKILL, and waits.
    ~PinnedProcess();

    bool isRunning();

    /// Waits until the process has ended. Returns whether its exit status was 0.
    bool succeeds();

  private:
    bool collect(int flags);

    pid_t process_;
    int status_ = 0;
};

}  // namespace dovrel::benchmarks

// RunningProcess: the server's real process. It ends normally, by SIGTERM or SIGINT, or by vanish().
//
// A signal must not interrupt an exchange, and the event loop can only be left from one of its handlers. So
// the signals are blocked in all threads, and a separate thread waits for them. That thread wakes a thread in
// pause() or hang() and sends the server the same 'quit' event that a client would send.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "server/ServerProcess.h"

namespace merrowd {

class RunningProcess : public ServerProcess {
  public:
    /// Construct it before any other thread is started, because threads inherit the mask of blocked signals.
    RunningProcess();
    ~RunningProcess() override;

    void pause(std::chrono::milliseconds time) override;
    void hang() override;
    [[noreturn]] void vanish() override;

    /// Returns the signal that told the server to end, or 0 if there was none.
    int signalNumber() const { return signal_; }

  private:
    void takeSignals();

    std::atomic<int> signal_{0};
    std::atomic<bool> over_{false};
    std::mutex mutex_;
    std::condition_variable changed_;
    std::thread taker_;
};

}  // namespace merrowd

// The real process of the server: it ends by itself, by SIGTERM or SIGINT, or by vanishing.
//
// A signal must not cut an exchange in half, and the event loop can only be left from inside one of its
// handlers. So the signals are kept from all threads, and one thread of our own takes them: it releases
// whoever pauses, and sends the server the same 'quit' event that a client would send.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "server/ServerProcess.h"

namespace merrowd {

class RunningProcess : public ServerProcess {
  public:
    /// To be made before any other thread is started, because threads inherit which signals they get.
    RunningProcess();
    ~RunningProcess() override;

    void pause(std::chrono::milliseconds time) override;
    void hang() override;
    [[noreturn]] void vanish() override;

    /// The signal that told the server to end; 0 as long as there was none.
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

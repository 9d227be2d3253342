// Memory that changes while another process reads it.
#pragma once

#include <atomic>
#include <functional>
#include <thread>
#include <utility>

/// Calls a function again and again on a thread of its own until it is destroyed.
class Changing {
  public:
    explicit Changing(std::function<void()> change)
        : thread_([this, change = std::move(change)] {
              while (!isOver_)
                  change();
          }) {}
    Changing(const Changing&) = delete;
    Changing& operator=(const Changing&) = delete;
    ~Changing() {
        isOver_ = true;
        thread_.join();
    }

  private:
    std::atomic<bool> isOver_{false};
    std::thread thread_;
};

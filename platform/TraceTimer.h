// TraceTimer: a stopwatch for the lines of a trace. Starts when it is made.
#pragma once

#include <chrono>
#include <string>

namespace dovrel {

class TraceTimer {
  public:
    /// "123 us"
    std::string text() const {
        const std::chrono::duration<double, std::micro> passed = std::chrono::steady_clock::now() - begin_;
        return std::to_string(static_cast<long long>(passed.count())) + " us";
    }

  private:
    const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

}  // namespace dovrel

// TraceTimer: a stopwatch for the entries of a trace. It starts when it is constructed.
#pragma once

#include <chrono>
#include <string>

namespace dovrel {

class TraceTimer {
  public:
    /// Returns the time since the start, such as "123 us".
    std::string text() const {
        const std::chrono::duration<double, std::micro> passed = std::chrono::steady_clock::now() - begin_;
        return std::to_string(static_cast<long long>(passed.count())) + " us";
    }

  private:
    const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

}  // namespace dovrel

// IntervalTimer: a stopwatch in milliseconds, which wraps after about 49 days.
#pragma once

#include <cstdint>
#include <string>

namespace dovrel {

class IntervalTimer {
  public:
    /// Starts.
    explicit IntervalTimer(std::string label);

    /// Milliseconds since the start, modulo 2^32.
    uint32_t elapsed() const;

    /// Sets the last mark to now. Answers the heading of the interval, `label` and " Interval time: ".
    std::string mark(const std::string& label);

    /// The clock in milliseconds at the start, and at the last mark.
    uint32_t getStart() const { return start_; }
    uint32_t getLastMark() const { return lastMark_; }

    const std::string& getLabel() const { return label_; }

  private:
    uint32_t start_;
    uint32_t lastMark_;
    std::string label_;
};

}  // namespace dovrel

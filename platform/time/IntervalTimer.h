// IntervalTimer: a stopwatch in milliseconds. It wraps after about 49 days.
#pragma once

#include <cstdint>
#include <string>

namespace dovrel {

class IntervalTimer {
  public:
    /// Starts the stopwatch.
    explicit IntervalTimer(std::string label);

    /// Returns the milliseconds since the start, modulo 2^32.
    uint32_t elapsed() const;

    /// Sets the last mark to the current time. Returns `label` followed by " Interval time: ".
    std::string mark(const std::string& label);

    /// Return the clock in milliseconds at the start and at the last mark.
    uint32_t getStart() const { return start_; }
    uint32_t getLastMark() const { return lastMark_; }

    const std::string& getLabel() const { return label_; }

  private:
    uint32_t start_;
    uint32_t lastMark_;
    std::string label_;
};

}  // namespace dovrel

// LogEntry: one entry of a log: a time stamp and a message. The code that constructs or receives an entry
// owns it.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace dovrel {

class LogEntry {
  public:
    LogEntry(int64_t timeStamp, std::string message) : timeStamp_(timeStamp), message_(std::move(message)) {}
    virtual ~LogEntry() = default;

    int64_t getTimeStamp() const { return timeStamp_; }

    /// The reference is valid as long as the entry exists.
    const std::string& getMessage() const { return message_; }

  private:
    int64_t timeStamp_;
    std::string message_;
};

}  // namespace dovrel

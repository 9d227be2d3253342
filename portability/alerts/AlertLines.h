// Splits a stream's data into lines. Private to the layer.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace portability {

class AlertLines {
  public:
    /// Adds bytes that were read from the stream. If a line is longer than kLongestAlertLine
    /// (AlertMessages.h), this and all later calls return false; next() still returns the lines before it.
    bool append(const char* bytes, size_t count);

    /// Removes the oldest complete line and returns it without its line feed. Returns nothing if there is
    /// none yet.
    std::optional<std::string> next();

    /// Returns whether there are bytes that next() has not returned.
    bool hasRest() const { return !bytes_.empty(); }

  private:
    std::string bytes_;
    size_t lineLength_ = 0;  // length of the incomplete last line
    bool tooLong_ = false;
};

}  // namespace portability

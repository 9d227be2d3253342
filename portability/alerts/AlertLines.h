// Lines out of the pieces in which a stream delivers them. Private to the layer.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace portability {

class AlertLines {
  public:
    /// Adds what was read from the stream. Returns false, from then on always, if a line is longer than
    /// kLongestAlertLine (AlertMessages.h); the lines before it can still be taken.
    bool append(const char* bytes, size_t count);

    /// Takes the oldest complete line, without its line feed. Returns nothing if there is none yet.
    std::optional<std::string> next();

    /// Whether there are bytes that were not taken.
    bool hasRest() const { return !bytes_.empty(); }

  private:
    std::string bytes_;
    size_t lineLength_ = 0;  // of the last line so far
    bool tooLong_ = false;
};

}  // namespace portability

#include "portability/alerts/AlertLines.h"

#include "portability/alerts/AlertMessages.h"

namespace portability {

bool AlertLines::append(const char* bytes, size_t count) {
    for (size_t at = 0; at < count && !tooLong_; ++at) {
        lineLength_ = bytes[at] == '\n' ? 0 : lineLength_ + 1;
        tooLong_ = lineLength_ > kLongestAlertLine;
        if (!tooLong_) bytes_ += bytes[at];
    }
    return !tooLong_;
}

std::optional<std::string> AlertLines::next() {
    const size_t end = bytes_.find('\n');
    if (end == std::string::npos) return std::nullopt;
    std::string line = bytes_.substr(0, end);
    bytes_.erase(0, end + 1);
    return line;
}

}  // namespace portability

// Waits actively for the short time in which most replies arrive. Private to the layer.
#pragma once

#include <chrono>
#include <cstddef>

namespace portability {

/// A short time during which a waiting thread polls, and yields to other threads in between. Sleeping and
/// being woken takes many times longer than a small exchange.
///
/// The time is 50 microseconds. POS_SPIN_US sets another one; 0 turns polling off. For large images the time
/// is longer, because the peer needs time to copy them. The factor is 1 plus the number of full 256 KiB in
/// the image, at most 16.
class Spin {
  public:
    /// `imageSize`: size of the larger image of the exchange, in bytes.
    explicit Spin(size_t imageSize = 0);

    /// Yields to other threads once and returns true. Returns false, without yielding, if the time is over.
    /// The time starts with the first call.
    bool again();

    /// Returns whether polling is on.
    static bool isOn();

  private:
    const std::chrono::microseconds time_;
    bool started_ = false;
    std::chrono::steady_clock::time_point end_{};
};

/// Returns the time that the text specifies. Returns the default if `setting` is null or is not a number from
/// 0 to 1000000 (microseconds).
std::chrono::microseconds spinTime(const char* setting);

}  // namespace portability

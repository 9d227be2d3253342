// Waiting without going to sleep, for the time in which most answers arrive. Private to the layer.
#pragma once

#include <chrono>
#include <cstddef>

namespace portability {

/// A short time during which a waiting thread looks again and again, giving way to others in between. To be
/// woken costs many times what a small exchange costs. The time is 50 microseconds; POS_SPIN_US sets another,
/// 0 turns spinning off. It is longer where large images go to and fro, since the other side is busy copying
/// then: the same time once more for each quarter of a mebibyte, at most sixteen times.
class Spin {
  public:
    /// `imageSize`: bytes of the largest image of the exchange.
    explicit Spin(size_t imageSize = 0);

    /// Gives way to other threads once and answers true; false, at once, when the time is over. The time runs
    /// from the first call.
    bool again();

    /// Whether there is any time at all.
    static bool isOn();

  private:
    const std::chrono::microseconds time_;
    bool started_ = false;
    std::chrono::steady_clock::time_point end_{};
};

/// The time that the text sets; the default for a null pointer and for anything but a number up to a second.
std::chrono::microseconds spinTime(const char* setting);

}  // namespace portability

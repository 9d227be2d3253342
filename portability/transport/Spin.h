// Waits actively for the short time in which most replies arrive. Private to the layer.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace portability {

/// The results of earlier waits at the same place. Polling ends a wait sooner only if the other side is quick and a
/// processor is free; otherwise it takes processor time from the other side. So after a wait that polled in
/// vain, the next wait does not poll, after two such waits the next two do not, then four, up to kMostSkipped.
/// One success ends that. Not thread-safe: one thread at a time.
class SpinHistory {
  public:
    static constexpr uint32_t kMostSkipped = 64;

    /// Returns whether the next wait will poll.
    bool isWorthwhile() const { return skips_ == 0; }

    /// Begins a wait. Returns whether it should poll.
    bool begin() {
        if (skips_ == 0) return true;
        --skips_;
        return false;
    }

    /// The wait that was begun last ended while it polled.
    void noteSuccess() { penalty_ = 0; }

    /// The wait that was begun last polled in vain, or the processors are so busy that sleeping is better.
    void noteFailure() {
        penalty_ = std::clamp<uint32_t>(penalty_ * 2, 1, kMostSkipped);
        skips_ = penalty_;
    }

  private:
    uint32_t penalty_ = 0;
    uint32_t skips_ = 0;
};

/// A short time during which a waiting thread polls. Sleeping and being woken takes many times longer than a
/// small exchange.
///
/// The time is 50 microseconds. POS_SPIN_US sets another one; 0 turns polling off. For large images the time
/// is longer, because both sides need time to copy them. The factor is 1 plus the number of full 128 KiB in
/// the image, at most 16. The time is over early if other threads use the processor for four times as long.
class Spin {
  public:
    /// `imageSize`: size of the larger image of the exchange, in bytes.
    explicit Spin(size_t imageSize = 0);

    /// Begins a wait with a history, which must outlive it. If the history advises against polling, the time
    /// is over at once. Unless found() is called, the destructor notes that polling was in vain.
    Spin(SpinHistory& history, size_t imageSize);

    Spin(const Spin&) = delete;
    Spin& operator=(const Spin&) = delete;
    ~Spin();

    /// Where the peer runs, as far as this thread knows.
    enum class Peer {
        elsewhere,  ///< on another processor: this thread waits for a few cycles
        here        ///< on this processor, or unknown: this thread yields to other threads
    };

    /// Waits and returns true: the caller must look again. Returns false, without waiting, if the time is over.
    /// The time starts with the first call.
    bool again(Peer peer = Peer::here);

    /// Returns whether the last call of again() waited so long that a system call does not matter. True after
    /// every wait for a peer on this processor, and after every 16th wait for one elsewhere.
    bool isSystemCallDue() const { return isSystemCallDue_; }

    /// Call this when the awaited event has happened.
    void found();

    /// Returns whether polling is on.
    static bool isOn();

  private:
    using Clock = std::chrono::steady_clock;

    const std::chrono::microseconds time_;
    SpinHistory* const history_ = nullptr;
    bool started_ = false;
    bool over_ = false;
    bool found_ = false;
    bool isSystemCallDue_ = false;
    int looks_ = 0;  // waits until the next look at the clock
    Clock::time_point end_{};
};

/// Returns the time that the text specifies. Returns the default if `setting` is null or is not a number from
/// 0 to 1000000 (microseconds).
std::chrono::microseconds spinTime(const char* setting);

}  // namespace portability

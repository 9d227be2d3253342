// FastClock: while it exists, time passes faster in this process, so that a test need not wait out a long time-out.
//
// It replaces std::chrono::steady_clock::now and ppoll, which are what this system's events wait with. Test
// programs get it with fast_clock() in their build file. Other processes, sleeps and file times keep the real
// pace.
#pragma once

namespace dovrel::test {

class FastClock {
  public:
    /// A second of the steady clock now takes the `factor`-th part of a second. Only one object at a time. It
    /// should be created and destroyed while no other thread reads the clock.
    explicit FastClock(int factor);
    FastClock(const FastClock&) = delete;
    FastClock& operator=(const FastClock&) = delete;

    /// The clock goes on at the real pace from where it is; it does not jump back.
    ~FastClock();
};

}  // namespace dovrel::test

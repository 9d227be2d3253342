// HeapWatch: observes every malloc and realloc in this program's own code and can make selected requests
// fail. If WatchedNew.cpp is part of the program, it also observes every operator new.
//
// The linker redirects the calls (--wrap), which also works with every sanitizer. The CMake function
// watch_heap in tests/support/CMakeLists.txt prepares a program for it. Only one HeapWatch may exist at a
// time, and only one thread may allocate.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <set>
#include <vector>

namespace dovrel::test {

class HeapWatch {
  public:
    enum class Refusal { kOnce, kForever };

    HeapWatch();
    HeapWatch(const HeapWatch&) = delete;
    HeapWatch& operator=(const HeapWatch&) = delete;
    ~HeapWatch();

    /// Makes every request fail, starting with the nth from now on.
    void failFrom(size_t nth);

    /// Makes exactly these requests fail. They are counted from now on; the next request is 1.
    void failAt(std::set<size_t> requests);

    /// Makes the nth request from now on fail (the next is 1), either alone or together with all later ones.
    void refuse(size_t nth, Refusal refusal);

    /// Returns true if any request failed.
    bool hasRefused() const { return hasRefused_; }

    /// Returns the requested sizes since the watch began, in order.
    const std::vector<size_t>& requests() const { return requests_; }

    /// Called by the redirected functions: records the request and returns whether it may succeed.
    bool admits(size_t bytes);

  private:
    static constexpr size_t kNever = static_cast<size_t>(-1);

    std::vector<size_t> requests_;
    bool hasRefused_ = false;
    size_t counted_ = 0;
    size_t firstOfAll_ = kNever;
    std::set<size_t> single_;
};

/// Runs `work` repeatedly: with its first allocation failing, then its second, and so on until it
/// makes no more requests; each time with that request alone, and again with all later ones. After
/// each run, when allocations succeed again, it calls `check(refused)`. In the last run nothing
/// fails. Stops early if a check fails.
template <class Work, class Check>
void refuseEachRequest(const Work& work, const Check& check) {
    constexpr size_t kMostRequests = 10'000;
    for (const auto refusal : {HeapWatch::Refusal::kOnce, HeapWatch::Refusal::kForever}) {
        size_t nth = 0;
        for (bool refused = true; refused;) {
            ASSERT_LT(++nth, kMostRequests);
            SCOPED_TRACE(nth);
            {
                HeapWatch watch;
                watch.refuse(nth, refusal);
                work();
                refused = watch.hasRefused();
            }
            check(refused);
            if (testing::Test::HasFailure()) return;
        }
        EXPECT_GT(nth, 1u) << "no request was refused";
    }
}

}  // namespace dovrel::test

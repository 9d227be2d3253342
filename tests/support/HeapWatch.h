// HeapWatch: sees every malloc and realloc that the code of this program makes, and lets some of them fail;
// with WatchedNew.cpp in the program every operator new, too.
//
// The linker leads the calls here (--wrap), so that it works below any sanitizer as well; watch_heap in
// tests/support/CMakeLists.txt sets a program up. One watch at a time, one thread.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <set>
#include <vector>

namespace dovrel::test {

class HeapWatch {
  public:
    enum class Refusal { kOnce, kForGood };

    HeapWatch();
    HeapWatch(const HeapWatch&) = delete;
    HeapWatch& operator=(const HeapWatch&) = delete;
    ~HeapWatch();

    // No request finds memory from the nth from now on.
    void failFrom(size_t nth);

    // Just these requests find no memory, counted from now on; the next is 1.
    void failAt(std::set<size_t> requests);

    // The nth request from now on, counted from 1, finds no memory: it alone, or it and all that follow.
    void refuse(size_t nth, Refusal refusal);

    // Whether a request found no memory.
    bool hasRefused() const { return hasRefused_; }

    // The sizes asked for since the watch began, in order.
    const std::vector<size_t>& requests() const { return requests_; }

    // For the wrapped calls: notes the request, and tells whether it may have its memory.
    bool admits(size_t bytes);

  private:
    static constexpr size_t kNever = static_cast<size_t>(-1);

    std::vector<size_t> requests_;
    bool hasRefused_ = false;
    size_t counted_ = 0;
    size_t firstOfAll_ = kNever;
    std::set<size_t> single_;
};

/// Runs `work` with its first request for memory refused, its second, and so on until it makes no more, each
/// request alone and then with all that follow. After each run, with memory again, `check(refused)` looks at
/// what came of it; the last run has nothing refused. Ends early when a check fails.
template <class Work, class Check>
void refuseEachRequest(const Work& work, const Check& check) {
    constexpr size_t kMostRequests = 10'000;
    for (const auto refusal : {HeapWatch::Refusal::kOnce, HeapWatch::Refusal::kForGood}) {
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

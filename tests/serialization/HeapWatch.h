// HeapWatch: sees every malloc and realloc that the code of this program makes, and lets some of them fail.
//
// The linker leads the calls here (--wrap), so that it works below any sanitizer as well. One watch at a
// time, one thread.
#pragma once

#include <cstddef>
#include <set>
#include <vector>

namespace dovrel::test {

class HeapWatch {
  public:
    HeapWatch();
    HeapWatch(const HeapWatch&) = delete;
    HeapWatch& operator=(const HeapWatch&) = delete;
    ~HeapWatch();

    // No request finds memory from the nth from now on.
    void failFrom(size_t nth);

    // Just these requests find no memory, counted from now on; the next is 1.
    void failAt(std::set<size_t> requests);

    // The sizes asked for since the watch began, in order.
    const std::vector<size_t>& requests() const { return requests_; }

    // For the wrapped calls: notes the request, and tells whether it may have its memory.
    bool admits(size_t bytes);

  private:
    static constexpr size_t kNever = static_cast<size_t>(-1);

    std::vector<size_t> requests_;
    size_t counted_ = 0;
    size_t firstOfAll_ = kNever;
    std::set<size_t> single_;
};

}  // namespace dovrel::test

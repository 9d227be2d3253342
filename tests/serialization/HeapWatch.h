// HeapWatch: sees every malloc and realloc that the code of this program makes, and lets one of them fail.
//
// The linker leads the calls here (--wrap), so that it works below any sanitizer as well. One watch at a
// time, one thread.
#pragma once

#include <cstddef>
#include <vector>

namespace dovrel::test {

class HeapWatch {
  public:
    HeapWatch();
    HeapWatch(const HeapWatch&) = delete;
    HeapWatch& operator=(const HeapWatch&) = delete;
    ~HeapWatch();

    // The nth request from now on finds no memory, and neither does any after it.
    void failFrom(size_t nth) { allowed_ = nth - 1; }

    // The nth request from now on finds no memory, all others do.
    void failOnce(size_t nth);

    // The sizes asked for since the watch began, in order.
    const std::vector<size_t>& requests() const { return requests_; }

    // For the wrapped calls: notes the request, and tells whether it may have its memory.
    bool admits(size_t bytes);

  private:
    static constexpr size_t kAll = static_cast<size_t>(-1);

    std::vector<size_t> requests_;
    size_t allowed_ = kAll;
    bool once_ = false;
};

}  // namespace dovrel::test

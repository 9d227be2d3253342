// AllocationFault: lets the nth request for memory of this program's code fail, from operator new as well as
// from malloc and realloc.
//
// Programs with this file have the linker lead malloc and realloc here (--wrap). One fault at a time, one
// thread.
#pragma once

#include <cstddef>

namespace dovrel::test {

class AllocationFault {
  public:
    enum class Duration { once, forGood };

    /// `nth` counts from 1.
    AllocationFault(size_t nth, Duration duration);
    AllocationFault(const AllocationFault&) = delete;
    AllocationFault& operator=(const AllocationFault&) = delete;
    ~AllocationFault();

    /// Whether a request has failed.
    static bool happened();
};

}  // namespace dovrel::test

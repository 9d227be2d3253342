// A fault that the test puts into the calls that the library makes to the C library.
#pragma once

#include <cstddef>
#include <map>
#include <ostream>
#include <string>

namespace dovrel::test {

/// Which call fails, and how.
struct Fault {
    static constexpr int kShort = -1;

    const char* function;  ///< "malloc" means every function that allocates
    int error;             ///< errno; kShort: the call processes only a part of the bytes
    size_t nth;            ///< the nth call of that function, beginning with 1
    bool stays;            ///< from then on every function that can fail with this error fails with it
};

std::ostream& operator<<(std::ostream& stream, const Fault& fault);

/// While it exists, the fault is in effect for the calls that the library makes on this thread, and in a
/// process that it starts on this thread until that process executes its program. Only one may exist at a
/// time. The destructor stores in `hasStruck` whether the nth call was made.
class FaultInEffect {
  public:
    FaultInEffect(const Fault& fault, bool& hasStruck);
    FaultInEffect(const FaultInEffect&) = delete;
    FaultInEffect& operator=(const FaultInEffect&) = delete;
    ~FaultInEffect();

  private:
    bool& hasStruck_;
};

/// While it exists, counts the calls that the library makes on this thread.
class CallCounter {
  public:
    CallCounter();
    CallCounter(const CallCounter&) = delete;
    CallCounter& operator=(const CallCounter&) = delete;
    ~CallCounter();
};

/// Returns what the last CallCounter counted, by function; allocations have the name "malloc".
std::map<std::string, size_t> countedCalls();

/// For the replaced functions. Counts a call; returns the error with which the call must fail, Fault::kShort
/// if it must process only a part of its bytes, or 0. Allocates nothing.
int strike(const char* function) noexcept;

/// Returns how many bytes of heap memory this process has in use.
size_t heapInUse();

}  // namespace dovrel::test

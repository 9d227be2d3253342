#include "tests/faults/Fault.h"

#include <pthread.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "tests/faults/SystemCallErrors.h"

namespace dovrel::test {

namespace {

// Plain data, because strike() is called inside malloc, and in new processes that share this one's memory.
const Fault* inEffect = nullptr;
size_t calls = 0;
bool hasBegun = false;

struct Count {
    const char* function;
    size_t calls;
};
std::array<Count, 128> counts;
size_t functions = 0;
bool isCounting = false;

// A new process that shares this one's memory also shares the thread's identity.
pthread_t watched;

bool isOf(const char* function) {
    return std::strcmp(function, inEffect->function) == 0;
}

void count(const char* function) {
    const auto end = counts.begin() + functions;
    const auto found = std::find_if(
        counts.begin(), end, [&](const Count& known) { return std::strcmp(known.function, function) == 0; });
    if (found != end) {
        ++found->calls;
    } else if (functions < counts.size()) {
        counts[functions++] = {function, 1};
    }
}

}  // namespace

int strike(const char* function) noexcept {
    if (inEffect == nullptr && !isCounting) return 0;
    if (pthread_equal(pthread_self(), watched) == 0) return 0;
    if (isCounting) {
        count(function);
        return 0;
    }
    if (isOf(function) && ++calls == inEffect->nth) {
        hasBegun = true;
        return inEffect->error;
    }
    if (!hasBegun || !inEffect->stays) return 0;
    if (inEffect->error == Fault::kShort) return isOf(function) ? Fault::kShort : 0;
    const bool fails = isOf(function) || canFailWith(function, inEffect->error);
    return fails ? inEffect->error : 0;
}

FaultInEffect::FaultInEffect(const Fault& fault) {
    watched = pthread_self();
    calls = 0;
    hasBegun = false;
    inEffect = &fault;
}

FaultInEffect::~FaultInEffect() {
    inEffect = nullptr;
}

bool FaultInEffect::hasStruck() const {
    return hasBegun;
}

CallCounter::CallCounter() {
    watched = pthread_self();
    functions = 0;
    isCounting = true;
}

CallCounter::~CallCounter() {
    isCounting = false;
}

std::map<std::string, size_t> countedCalls() {
    std::map<std::string, size_t> result;
    for (size_t i = 0; i < functions; ++i)
        result[counts[i].function] = counts[i].calls;
    return result;
}

std::ostream& operator<<(std::ostream& stream, const Fault& fault) {
    stream << "call " << fault.nth << " of " << fault.function << ": ";
    if (fault.error == Fault::kShort) {
        stream << "short";
    } else {
        stream << strerrorname_np(fault.error);
    }
    return stream << (fault.stays ? ", and all later ones" : "");
}

}  // namespace dovrel::test

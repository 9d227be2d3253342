// Series of faults: the first call of a function fails, then the second, and so on.
#pragma once

#include <cerrno>
#include <map>
#include <string>
#include <vector>

#include "tests/faults/Fault.h"
#include "tests/faults/SampleSize.h"
#include "tests/faults/SystemCallErrors.h"

namespace dovrel::test {

struct FaultSeries {
    const char* function;
    int error;
    bool stays;
    size_t calls;  ///< that are made without a fault

    Fault fault(size_t nth) const { return {function, error, nth, stays}; }
};

/// Adds the series of one error, once and from then on. An interrupted call is right to begin again and
/// again, and the system reports a connection that was reset only once.
inline void addSeries(std::vector<FaultSeries>& all, const char* function, int error, size_t calls) {
    all.push_back({function, error, false, calls});
    if (error != EINTR && error != ECONNRESET) all.push_back({function, error, true, calls});
}

/// Returns the series for the allocations among the counted calls.
inline std::vector<FaultSeries> allocationSeries(const std::map<std::string, size_t>& counted) {
    std::vector<FaultSeries> all;
    const auto allocations = counted.find("malloc");
    if (allocations != counted.end()) addSeries(all, "malloc", ENOMEM, allocations->second);
    return all;
}

/// Returns the series for the system calls among the counted calls.
inline std::vector<FaultSeries> systemCallSeries(const std::map<std::string, size_t>& counted) {
    std::vector<FaultSeries> all;
    for (const auto& [function, calls] : counted) {
        const SystemCallErrors* const row = findErrors(function.c_str());
        if (row == nullptr) continue;
        for (const int* error = row->errors; *error != 0; ++error)
            addSeries(all, row->function, *error, calls);
        if (canBeShort(row->function)) addSeries(all, row->function, Fault::kShort, calls);
    }
    return all;
}

/// Calls `tryFault(fault)` for all faults of the series, or for `sample` of them if that is not 0, spread
/// evenly. It returns whether the fault struck. Of all faults, a series is tried until the first one that
/// does not strike: a fault can cause more calls than there are without one. Returns how many faults there
/// are without that.
template <typename TryFault>
size_t tryFaults(const std::vector<FaultSeries>& all, size_t sample, const TryFault& tryFault) {
    constexpr size_t kMostCalls = 5000;
    size_t possible = 0;
    for (const FaultSeries& series : all)
        possible += series.calls;
    const size_t distance = sample == 0 ? 1 : possible / sample + 1;
    size_t next = sample == 0 ? 0 : numberFrom("DOVREL_FAULTS_SEED", 0) % distance;
    for (const FaultSeries& series : all) {
        if (sample == 0) {
            for (size_t nth = 1; nth <= kMostCalls && tryFault(series.fault(nth));)
                ++nth;
            continue;
        }
        for (; next < series.calls; next += distance)
            tryFault(series.fault(next + 1));
        next -= series.calls;
    }
    return possible;
}

}  // namespace dovrel::test

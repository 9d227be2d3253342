// A process that calls the server and measures each call.
#pragma once

#include <functional>
#include <vector>

#include "Case.h"

namespace dovrel::benchmarks {

/// The times of the calls of one host.
struct HostTimes {
    double begin = 0;                 ///< seconds of the system's clock, before the first call
    double end = 0;                   ///< the same, after the last call
    std::vector<double> nanoseconds;  ///< one per call
};

/// Connects, calls for a while without measuring, calls `ready`, and measures. Throws std::exception.
HostTimes measureHost(const Case& measured, const std::function<void()>& ready);

}  // namespace dovrel::benchmarks

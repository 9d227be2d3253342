// The parameters of one measurement.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

#include "PinnedProcess.h"

namespace dovrel::benchmarks {

struct Case {
    enum class Kind { calls, first, start };

    Kind kind = Kind::calls;
    size_t size = 64;                     ///< bytes of the request, and of the reply
    int clientProcessor = kAnyProcessor;  ///< of all threads and processes of the hosts
    int serverProcessor = kAnyProcessor;
    std::chrono::microseconds pause{0};  ///< before each call
    int threads = 1;                     ///< that share the connection of a host
    int hosts = 1;                       ///< processes
    double seconds = 0.2;  ///< that a host calls; a quarter of this before that, without measuring
    std::string folder;    ///< for sockets and results
};

}  // namespace dovrel::benchmarks

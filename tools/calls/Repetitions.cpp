#include "tools/calls/Repetitions.h"

#include <algorithm>
#include <cstdio>
#include <numeric>

#include "Percentiles.h"
#include "tools/calls/Progress.h"

namespace dovrel::tools {

namespace {

constexpr double kMicrosecondsPerSecond = 1e6;

double sum(const std::vector<double>& times) {
    return std::accumulate(times.begin(), times.end(), 0.0);
}

}  // namespace

std::string Repetitions::summary() const {
    const double total = sum(times) / kMicrosecondsPerSecond;
    char text[512];
    std::snprintf(text, sizeof text,
                  "%zu calls in %.3f s: %.0f calls per second\n"
                  "min %.1f us, median %.1f us, p99 %.1f us, max %.1f us\n"
                  "each sent %s and received %s\n",
                  times.size(), total, static_cast<double>(times.size()) / total,
                  *std::min_element(times.begin(), times.end()), benchmarks::median(times),
                  benchmarks::percentile99(times), *std::max_element(times.begin(), times.end()),
                  sizeText(static_cast<double>(sent)).c_str(),
                  sizeText(static_cast<double>(received)).c_str());
    return text;
}

nlohmann::ordered_json Repetitions::toJson() const {
    return {{"calls", times.size()},
            {"bytesSent", sent},
            {"bytesReceived", received},
            {"microseconds",
             {{"total", sum(times)},
              {"min", *std::min_element(times.begin(), times.end())},
              {"median", benchmarks::median(times)},
              {"p99", benchmarks::percentile99(times)},
              {"max", *std::max_element(times.begin(), times.end())}}}};
}

}  // namespace dovrel::tools

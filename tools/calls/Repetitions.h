// The times of repeated calls.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace dovrel::tools {

/// What --repeat reports. Times are in microseconds.
struct Repetitions {
    std::vector<double> times;  ///< of each call
    size_t sent = 0;            ///< bytes that each call sent
    size_t received = 0;        ///< bytes that the last call returned

    /// Returns a few lines for people. There must be at least one time.
    std::string summary() const;
    nlohmann::ordered_json toJson() const;
};

}  // namespace dovrel::tools

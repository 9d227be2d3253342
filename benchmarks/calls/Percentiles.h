// The figures by which the times of many calls are described.
#pragma once

#include <vector>

namespace dovrel::benchmarks {

/// Return 0 for no values.

/// The value in the middle; the mean of the two in the middle if their number is even.
double median(std::vector<double> values);

/// The smallest value that at least 99 of 100 values do not exceed. That is the largest one of fewer than 100.
double percentile99(std::vector<double> values);

}  // namespace dovrel::benchmarks

#include "Percentiles.h"

#include <algorithm>
#include <cstddef>

namespace dovrel::benchmarks {

double median(std::vector<double> values) {
    if (values.empty()) return 0;
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 != 0 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

double percentile99(std::vector<double> values) {
    if (values.empty()) return 0;
    const size_t rank = (values.size() * 99 + 99) / 100;  // from 1
    const auto place = values.begin() + static_cast<std::ptrdiff_t>(rank - 1);
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

}  // namespace dovrel::benchmarks

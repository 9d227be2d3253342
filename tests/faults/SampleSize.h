// How many faults a test tries.
#pragma once

#include <cstddef>
#include <cstdlib>

namespace dovrel::test {

/// Returns the number in an environment variable, or `otherwise` if the variable is not set.
inline size_t numberFrom(const char* variable, size_t otherwise) {
    const char* const text = getenv(variable);
    return text == nullptr ? otherwise : std::strtoul(text, nullptr, 10);
}

/// Returns how many faults of each test are tried; 0 means all.
inline size_t sampleSize() {
    constexpr size_t kUsual = 6;
    return numberFrom("DOVREL_FAULTS_SAMPLE", kUsual);
}

}  // namespace dovrel::test

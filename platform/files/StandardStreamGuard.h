// Keeps files that the library opens away from the numbers of the standard streams.
#pragma once

#include <array>

namespace dovrel {

/// While the guard exists, files get descriptors above 2, even if the host has closed its standard streams.
/// Without it a file could get the number of standard output or standard error, and whatever the host
/// prints would be written into the file.
///
/// The guard opens /dev/null under the free numbers and closes it at its end. If that fails, it does nothing.
class StandardStreamGuard {
  public:
    StandardStreamGuard();
    StandardStreamGuard(const StandardStreamGuard&) = delete;
    StandardStreamGuard& operator=(const StandardStreamGuard&) = delete;
    /// Leaves `errno` unchanged.
    ~StandardStreamGuard();

  private:
    static constexpr int kStandardStreams = 3;
    std::array<int, kStandardStreams> descriptors_ = {};
    int count_ = 0;
};

}  // namespace dovrel

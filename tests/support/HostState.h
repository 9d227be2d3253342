// HostState: the state of a process that belongs to the host. The library's calls must not change it.
#pragma once

#include <string>
#include <vector>

namespace dovrel::test {

class HostState {
  public:
    /// Records the signal actions, the signals that this thread blocks, the open descriptors, the locale, the
    /// environment, the limits, the working folder, the umask, and the children (running or ended).
    HostState();

    /// Compares with the current state. Returns one line for each difference.
    std::vector<std::string> changes() const;

  private:
    std::vector<std::string> lines_;
};

}  // namespace dovrel::test

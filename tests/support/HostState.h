// The state of a process that belongs to the host: a call of the library must leave it as it was.
#pragma once

#include <string>
#include <vector>

namespace dovrel::test {

class HostState {
  public:
    /// Takes note of the signal dispositions, the signals that this thread blocks, the open descriptors, the
    /// locale, the environment, the limits, the working folder, the mask for new files, and whether there is a
    /// child, ended or not.
    HostState();

    /// Compares with the present state; one line for each difference.
    std::vector<std::string> changes() const;

  private:
    std::vector<std::string> lines_;
};

}  // namespace dovrel::test

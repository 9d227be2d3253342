// What belongs to a host in its process, and must be as before once a call of the library has returned.
#pragma once

#include <string>
#include <vector>

namespace dovrel::test {

class HostState {
  public:
    /// Takes note of the signal dispositions, the signals that this thread blocks, the open descriptors, the
    /// locale, the working folder, the mask for new files, and whether there is a child, ended or not.
    HostState();

    /// What is no longer as noted, a line each.
    std::vector<std::string> changes() const;

  private:
    std::vector<std::string> lines_;
};

}  // namespace dovrel::test

// The server of the peer in its own process.
#pragma once

#include "Case.h"
#include "PinnedProcess.h"
#include "Signal.h"

namespace dovrel::benchmarks {

class RunningServer {
  public:
    /// Returns when clients can connect. Throws std::runtime_error if the server ends before that.
    explicit RunningServer(const Case& measured);

    /// Throws std::runtime_error if the server has ended, because then something else may have replied.
    void expectRunning();

  private:
    Signal ready_;
    PinnedProcess process_;
};

}  // namespace dovrel::benchmarks

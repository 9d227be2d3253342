// What can happen to the server's process in the middle of an exchange. Behind an interface, so that tests
// survive it.
#pragma once

#include <chrono>

namespace merrowd {

class ServerProcess {
  public:
    virtual ~ServerProcess() = default;

    /// Does nothing for that long; less where the server is told to end.
    virtual void pause(std::chrono::milliseconds time) = 0;

    /// Does nothing until the server is told to end.
    virtual void hang() = 0;

    /// Ends the process on the spot, as a crash would: nothing is flushed, nothing is answered.
    [[noreturn]] virtual void vanish() = 0;

  protected:
    ServerProcess() = default;
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;
};

}  // namespace merrowd

// ServerProcess: what an exchange can do to the server's process. It is an interface, so that tests can
// replace it and are not ended.
#pragma once

#include <chrono>

namespace merrowd {

class ServerProcess {
  public:
    virtual ~ServerProcess() = default;

    /// Blocks for that time, or until the server is told to end.
    virtual void pause(std::chrono::milliseconds time) = 0;

    /// Blocks until the server is told to end.
    virtual void hang() = 0;

    /// Ends the process at once, as a crash would: no buffer is flushed and no reply is sent.
    [[noreturn]] virtual void vanish() = 0;

  protected:
    ServerProcess() = default;
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;
};

}  // namespace merrowd

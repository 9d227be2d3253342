// Exchanges: handles the contents of each event. It logs the request, lets the request handler carry it out,
// applies the misbehaviour that the settings ask for, and logs the reply. It does not use Apple events, so
// tests can call it with bytes.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <memory>
#include <string>

#include "server/ExchangeLog.h"
#include "server/Outcome.h"
#include "server/RequestHandler.h"
#include "server/ServerProcess.h"
#include "server/ServerState.h"

namespace merrowd {

class Exchanges {
  public:
    /// All three must outlive the object.
    Exchanges(ServerState& state, ServerProcess& process, ExchangeLog& log);

    /// Handles one exchange of data. The reply may be made in the memory of the request, so a caller that does
    /// not need the request any more should move it.
    Outcome handleData(CPPByteArray request, pid_t sender);

    Outcome handleHandshake(pid_t sender);

    /// Removes applications whose process has ended. Returns true if the server must end because the last
    /// one has gone, or because none has come for the time that the settings allow.
    bool hasNoMoreClients();

  private:
    Outcome refuseParts(pid_t sender);
    Outcome handleNormally(CPPByteArray request, pid_t sender);
    Outcome handleWithFault(CPPByteArray request, pid_t sender);
    void applyFault(Outcome& outcome);
    void logEnd(const Outcome& outcome);
    bool mayEnd() const;
    bool hasLostLastClient();
    bool hasWaitedInVain() const;

    ServerState& state_;
    ServerProcess& process_;
    ExchangeLog& log_;
    RequestHandler handler_;
    bool hadClient_ = false;
    std::chrono::steady_clock::time_point lastRequest_ = std::chrono::steady_clock::now();
};

}  // namespace merrowd

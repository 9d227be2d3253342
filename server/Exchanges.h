// What becomes of each event: the request is logged, answered by the request handler, spoilt where the
// settings ask for that, and the answer is logged. Knows nothing of Apple events, so that tests can call it
// with bytes.
#pragma once

#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

#include "server/ExchangeLog.h"
#include "server/RequestHandler.h"
#include "server/ServerProcess.h"
#include "server/ServerState.h"

namespace merrowd {

/// What goes back to the client.
struct Outcome {
    /// The bytes of the reply's direct parameter, also where they are no transfer object; null: the reply has
    /// none.
    std::unique_ptr<POSTransferObj> parameter;
    int16_t status = 0;      ///< of the event as the platform sees it
    bool endServer = false;  ///< the server ends after this answer ...
    bool vanish = false;     ///< ... as a crash would
};

class Exchanges {
  public:
    /// All three must outlive the object.
    Exchanges(ServerState& state, ServerProcess& process, ExchangeLog& log);

    /// One exchange of data.
    Outcome data(const CPPByteArray& request, pid_t sender);

    Outcome handshake(pid_t sender);

    /// Takes over settings and described classes from a text in properties form. Answers a text of the same
    /// form: how many problems there were ("problems"), each of them ("problem 1" and so on), and how the
    /// server stands ("process", "applications", "objects").
    Outcome control(const std::string& text);

    /// The same for the text of the settings file. Problems go to the log.
    void configure(const std::string& text);

    /// Forgets applications whose process has gone. True when the server is to end because its last one has.
    bool lastClientHasGone();

  private:
    Outcome answered(const CPPByteArray& request, pid_t sender);
    Outcome spoilt(const CPPByteArray& request, pid_t sender);
    void spoilAnswer(Outcome& outcome);
    void logEnd(const Outcome& outcome);
    std::vector<std::string> applyText(const std::string& text);
    bool endsNow();

    ServerState& state_;
    ServerProcess& process_;
    ExchangeLog& log_;
    RequestHandler handler_;
    bool hadClient_ = false;
};

}  // namespace merrowd

// EventServer: receives Apple events in the event loop of the main thread and passes them to Exchanges, one at
// a time.
#pragma once

#include <memory>

#include "InterProcessCommunication/POS_to_Client_Communicator.h"
#include "server/ClientWatch.h"
#include "server/ControlCalls.h"
#include "server/Exchanges.h"
#include "server/SelfEvent.h"

namespace merrowd {

class EventServer {
  public:
    /// All arguments must outlive the object. There is one EventServer per process.
    EventServer(ServerState& state, Exchanges& exchanges, ControlCalls& control);

    /// Installs the handlers and serves until one of these happens: a 'quit' event arrives, the last client
    /// has ended (if the settings ask for that), or the fault vanishAfter ends the server. Call it on the
    /// main thread. Returns false if the handlers could not be installed.
    bool run();

    /// After run() has returned: returns whether the process must now end as if it had crashed.
    bool vanishes() const { return vanishes_; }

  private:
    using Handler = OSErr (EventServer::*)(const AppleEvent* event, AppleEvent* reply);

    OSErr data(const AppleEvent* event, AppleEvent* reply);
    OSErr handshake(const AppleEvent* event, AppleEvent* reply);
    OSErr control(const AppleEvent* event, AppleEvent* reply);
    OSErr tick(const AppleEvent* event, AppleEvent* reply);
    OSErr quit(const AppleEvent* event, AppleEvent* reply);

    template <Handler handler>
    static OSErr entry(const AppleEvent* event, AppleEvent* reply, SRefCon server);
    template <Handler handler>
    bool install(const EventKind& kind);

    OSErr send(Outcome outcome, const AppleEvent* event, AppleEvent* reply);
    void watchClients();

    ServerState& state_;
    Exchanges& exchanges_;
    ControlCalls& control_;
    const dovrel::POS_to_Client_Communicator channel_;
    ClientWatch watch_;
    bool vanishes_ = false;
};

}  // namespace merrowd

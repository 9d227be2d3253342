// The server as an application: receives Apple events and hands them to the exchanges, in the event loop of
// the process's main thread, one at a time.
#pragma once

#include <memory>

#include "InterProcessCommunication/POS_to_Client_Communicator.h"
#include "server/ClientWatch.h"
#include "server/Exchanges.h"
#include "server/SelfEvent.h"

namespace merrowd {

class EventServer {
  public:
    /// Both must outlive the object; there is one per process.
    EventServer(ServerState& state, Exchanges& exchanges);

    /// Installs the handlers and serves until a 'quit' event arrives, the last client has gone where that is
    /// asked for, or the settings made the server vanish. Main thread. False when the handlers could not be
    /// installed.
    bool run();

    /// Whether the server is to end as a crash would, now that run has returned.
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

    OSErr send(Outcome outcome, AppleEvent* reply);
    void watchClients();

    ServerState& state_;
    Exchanges& exchanges_;
    const dovrel::POS_to_Client_Communicator channel_;
    ClientWatch watch_;
    bool vanishes_ = false;
};

}  // namespace merrowd

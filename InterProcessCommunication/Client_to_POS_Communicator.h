// Client_to_POS_Communicator: the client's end of the Apple event channel, and the way to bring the server
// up.
//
// Results are the platform's 16-bit error codes, widened, and 0 for success; ConnectToServer has two of its
// own. Every operation blocks the calling thread until it is done and disposes of all that it made. No state
// is kept but the server's address; one operation at a time.
#pragma once

#include "InterProcessCommunication/IPC_via_AE.h"

namespace dovrel {

class IPC_Info;

class Client_to_POS_Communicator : public IPC_via_AE {
  public:
    Client_to_POS_Communicator() = default;
    ~Client_to_POS_Communicator() override;

    /// Sends the record's send buffer and waits for the answer (serverEvent::kDataTimeOutTicks), whose bytes
    /// become the receive buffer; empty after an error, and for an empty answer, which is none.
    int32_t SendData(IPC_Info& info) const;

    /// The same, and makes the record's reply object of the received bytes, also after an error. The record
    /// does not own that object: the caller takes it out.
    int32_t SendAndReceive(IPC_Info& info) const;

    /// The handshake: sends up to `attempts` events, each waiting `timeoutMs` milliseconds, until one is
    /// answered. What the answer says does not matter, but it has to have a direct parameter.
    int32_t WakeServer(uint32_t timeoutMs, uint32_t attempts) const;

    /// Makes sure that the server runs and answers: finds the application, launches it when no process of its
    /// name runs, and wakes it, ten times at most, each of five seconds for a server that stays silent. When
    /// it gives up it tells the user on standard output and returns kServerNotFound, the error of the folder
    /// lookup, or kServerNotLaunched.
    int32_t ConnectToServer() const;

    /// Asks the server to quit and does not wait. Success also when no server runs.
    int32_t QuitServer() const;

  private:
    int32_t exchange(IPC_Info& info) const;
    int32_t sendWakeEvents(const AppleEvent* event, SInt32 timeOutTicks, uint32_t attempts,
                           AppleEvent* reply) const;
    bool launchAndWake(CFURLRef application, int16_t& error) const;
};

}  // namespace dovrel

// Client_to_POS_Communicator: the client's end of the Apple event channel. It also launches and
// wakes the server.
//
// Every operation returns 0 for success or one of the platform's 16-bit error codes, widened to 32 bits.
// ConnectToServer has two more error codes. Every operation blocks the calling thread until it is done and
// disposes of everything that it created. The object keeps no state except the server's address. One
// operation at a time.
#pragma once

#include "InterProcessCommunication/IPC_via_AE.h"

namespace dovrel {

class IPC_Info;

class Client_to_POS_Communicator : public IPC_via_AE {
  public:
    Client_to_POS_Communicator() = default;
    ~Client_to_POS_Communicator() override;

    /// Sends the send buffer of `info` and waits for the reply, at most serverEvent::kDataTimeOutTicks. The
    /// bytes of the reply become the receive buffer. The receive buffer is empty after an error, and also if
    /// the reply is empty, which is not an error. The send buffer is released when the reply has arrived.
    int32_t SendData(IPC_Info& info) const;

    /// Does the same as SendData, and also creates the reply object of `info`, even after an error. The reply
    /// object owns the received bytes; the receive buffer is then empty. `info` does not own the object: the
    /// caller takes it out.
    int32_t SendAndReceive(IPC_Info& info) const;

    /// Makes the handshake: sends up to `attempts` events, each with a time-out of `timeoutMs` milliseconds,
    /// until the server replies to one. The content of the reply is ignored, but the reply must have a
    /// direct parameter.
    int32_t WakeServer(uint32_t timeoutMs, uint32_t attempts) const;

    /// Makes sure that the server runs and answers. Finds the application, launches it if no process with its
    /// name runs, and wakes it. Tries to launch and wake it at most ten times; each attempt takes up to five
    /// seconds if the server does not answer. If it fails, it prints a message for the user to standard output
    /// and returns kServerNotFound, the error of the folder lookup, or kServerNotLaunched.
    int32_t ConnectToServer() const;

    /// Asks the server to quit and does not wait. Returns success also if no server runs.
    int32_t QuitServer() const;

  private:
    int32_t sendAndReadReply(IPC_Info& info) const;
    int32_t sendWakeEvents(const AppleEvent* event, SInt32 timeOutTicks, uint32_t attempts,
                           AppleEvent* reply) const;
    bool launchAndWake(CFURLRef application, int16_t& error) const;
};

}  // namespace dovrel

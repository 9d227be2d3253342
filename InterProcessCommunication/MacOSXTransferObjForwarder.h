// MacOSXTransferObjForwarder: sends transfer objects over the Apple event channel, and reconnects if the
// server is gone.
#pragma once

#include <memory>

#include "InterProcessCommunication/Client_to_POS_Communicator.h"
#include "InterProcessCommunication/POSTransferObjForwarder.h"

namespace dovrel {

class MacOSXTransferObjForwarder : public POSTransferObjForwarder {
  public:
    MacOSXTransferObjForwarder() = default;
    MacOSXTransferObjForwarder(const MacOSXTransferObjForwarder&) = delete;
    MacOSXTransferObjForwarder& operator=(const MacOSXTransferObjForwarder&) = delete;
    ~MacOSXTransferObjForwarder() override;

    /// Sends the request up to 20 times. It tries again only if the server is gone (-600, -609), and
    /// reconnects after each such attempt. After the last failed attempt it reconnects once more and returns
    /// that attempt's reply, which is normally empty. Any other failure, and a request without bytes, throws
    /// a POSException at once.
    POSTransferObj* ForwardTransferObj(POSTransferObj& request) override;

    /// Does nothing while connected. Throws a POSException if the server is missing or cannot be launched and
    /// woken. Any other failure, that of a folder lookup, is ignored; the next request tries again.
    void ConnectToPOS(uint32_t hint) override;

    /// Always forgets the connection, because the platform cannot tell whether the server is alive without
    /// sending it an event.
    void CheckConnection() override;

    /// Returns the 8 bytes of the calling process's serial number, in the order in which they are in memory.
    CPPByteArray GetClientProcessID() override;

    bool isConnected() const { return connected_; }

  private:
    int32_t sendOnce(const POSTransferObj& request, std::unique_ptr<POSTransferObj>& reply) const;
    bool isServerAlive() const;

    bool connected_ = false;
    Client_to_POS_Communicator communicator_;
};

}  // namespace dovrel

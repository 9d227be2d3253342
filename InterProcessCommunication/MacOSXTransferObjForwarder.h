// MacOSXTransferObjForwarder: carries transfer objects over the Apple event channel, and brings the server
// back when it has gone away.
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

    /// Sends the request up to 20 times. Only a server that has gone away (-600, -609) is worth another
    /// attempt, after a reconnection each; the last failed attempt is followed by one, too. What it left,
    /// normally an empty object, is then the answer. Any other failure, and a request without bytes, is a
    /// POSException at once.
    POSTransferObj* ForwardTransferObj(POSTransferObj& request) override;

    /// Does nothing while connected. Throws for a server that is missing or cannot be brought up; any other
    /// failure, that of a folder lookup, passes in silence and is tried again with the next request.
    void ConnectToPOS(uint32_t hint) override;

    /// The platform has no way to tell that the server lives without asking it, so a connection is always
    /// forgotten.
    void CheckConnection() override;

    /// The 8 bytes of the calling process's serial number as they lie in memory.
    CPPByteArray GetClientProcessID() override;

    bool isConnected() const { return connected_; }

  private:
    int32_t sendOnce(const POSTransferObj& request, std::unique_ptr<POSTransferObj>& reply) const;
    bool isServerAlive() const;

    bool connected_ = false;
    Client_to_POS_Communicator communicator_;
};

}  // namespace dovrel

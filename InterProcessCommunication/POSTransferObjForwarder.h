// POSTransferObjForwarder: the interface of a transport for transfer objects. A forwarder starts the server,
// sends it a request and returns the reply.
#pragma once

#include <cstdint>

#include "serialization/CPPByteArray.h"

namespace dovrel {

class POSTransferObj;

/// The hint that every caller of ConnectToPOS passes.
constexpr uint32_t kConnectHint = 10;

/// Contract of every forwarder. Only one thread at a time may use a forwarder; the session's lock ensures
/// that. Failures are thrown as a pointer to a new object of CPPException or a derived class, which the
/// catching code owns. If memory runs out, std::bad_alloc is thrown.
class POSTransferObjForwarder {
  public:
    virtual ~POSTransferObjForwarder() = default;

    /// Sends the request and waits for its reply. Returns a new object that the caller deletes. The object
    /// may be empty if no attempt reached the server; then the first read of it throws. Throws a POSException
    /// if the exchange failed for a reason for which another attempt cannot help.
    virtual POSTransferObj* ForwardTransferObj(POSTransferObj& request) = 0;

    /// Makes sure that the server runs and answers. Callers pass kConnectHint; a forwarder may ignore the
    /// hint. Throws a POSException with a text for the user if the server is missing or cannot be started.
    virtual void ConnectToPOS(uint32_t hint) = 0;

    /// Tells the forwarder to forget a connection that may be broken. Sends nothing and never throws.
    virtual void CheckConnection() = 0;

    /// Returns the bytes that identify the calling process to the server, or an empty array if the system
    /// cannot tell them.
    virtual CPPByteArray GetClientProcessID() = 0;

  protected:
    POSTransferObjForwarder() = default;
    POSTransferObjForwarder(const POSTransferObjForwarder&) = default;
    POSTransferObjForwarder& operator=(const POSTransferObjForwarder&) = default;
};

}  // namespace dovrel

// The carrier of transfer objects: knows how to bring the server up and how to move one object there and
// back.
#pragma once

#include <cstdint>

#include "serialization/CPPByteArray.h"

namespace dovrel {

class POSTransferObj;

/// What every caller of ConnectToPOS passes.
constexpr uint32_t kConnectHint = 10;

/// Contract of every carrier. One thread at a time may use a forwarder; the session's lock sees to that.
/// Failures are thrown as a pointer to a new object of the CPPException family, which the catcher owns;
/// running out of memory is std::bad_alloc.
class POSTransferObjForwarder {
  public:
    virtual ~POSTransferObjForwarder() = default;

    /// Sends the request and waits for its answer. Returns a new object that the caller deletes; it may be
    /// empty when the server could not be reached in all attempts, which shows at the first read. Throws
    /// POSException when the exchange failed for a reason that another attempt cannot cure.
    virtual POSTransferObj* ForwardTransferObj(POSTransferObj& request) = 0;

    /// Makes sure that the server runs and answers. Callers pass kConnectHint; a carrier may ignore the hint.
    /// Throws POSException with the text for the user when the server is missing or cannot be brought up.
    virtual void ConnectToPOS(uint32_t hint) = 0;

    /// Lets the forwarder forget a connection that may have gone stale. Sends nothing, never throws.
    virtual void CheckConnection() = 0;

    /// The identity of the calling process as the server knows it; empty when the system cannot tell.
    virtual CPPByteArray GetClientProcessID() = 0;

  protected:
    POSTransferObjForwarder() = default;
    POSTransferObjForwarder(const POSTransferObjForwarder&) = default;
    POSTransferObjForwarder& operator=(const POSTransferObjForwarder&) = default;
};

}  // namespace dovrel

// POSTransferObjTrader: turns operations into requests. It packs the fields of each command, sends the
// request through the forwarder, checks the reply and unpacks it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "InterProcessCommunication/POSOperations.h"

namespace dovrel {

class POSTransferObj;
class POSTransferObjForwarder;

/// The class has one operation per command. Each operation sends exactly one request through the forwarder
/// and blocks until the reply arrives. (A registration first connects and checks the interface version.)
///
/// The outcome of an operation is POSOutcome::kUnlistedError if the reply has an error code for which no
/// exception is thrown, otherwise POSOutcome::kDone. Every other failure is thrown as a pointer to a new
/// CPPException, which the catching code owns:
///
/// - the exception that belongs to the error code of the reply;
/// - the reader's exception if the reply cannot be read;
/// - a plain CPPException for an identifier that does not have 16 bytes. An identifier of the wrong size in
///   a request is rejected before that request is sent (a registration has asked for the interface version by
///   then). In a reply it makes the reply unreadable.
///
/// If memory runs out, an operation throws std::bad_alloc.
///
/// A request has the fields of POSCommands.h, in the order of that table. Replies are deleted before an
/// operation returns. The trader takes no lock: one thread at a time.
class POSTransferObjTrader {
  public:
    POSTransferObjTrader() = default;
    POSTransferObjTrader(const POSTransferObjTrader&) = delete;
    POSTransferObjTrader& operator=(const POSTransferObjTrader&) = delete;
    virtual ~POSTransferObjTrader() = default;

    /// Sets the forwarder. It is not owned and must outlive every operation.
    void setForwarder(POSTransferObjForwarder* forwarder) { forwarder_ = forwarder; }
    POSTransferObjForwarder* getForwarder() const { return forwarder_; }

    /// Connects, checks the interface version and registers. The bytes of `options` are sent unchanged.
    /// Throws a CPPException if the server has another interface version.
    POSResult<POSRegistration> registerApplication(const std::string& name,
                                                   const std::vector<CPPClassID>& classes,
                                                   const CPPByteArray& options);
    POSOutcome unregisterApplication(uint32_t applicationId);
    POSResult<POSInstance> instantiateObject(uint32_t applicationId, const CPPClassID& classId,
                                             uint32_t executer);
    POSOutcome deleteObject(uint32_t applicationId, const CPPObjectID& objectId);
    POSResult<POSMethodReply> callMethod(uint32_t applicationId, const MethodCall& call);
    POSResult<ByteBlock> executeCommand(uint32_t applicationId, const Command& command);
    POSResult<ByteBlock> getInformation(uint32_t applicationId, const ByteView& request);

    /// Checks a reply; every reply passes through this function. A normal reply is left as it is, and its
    /// message kind is returned. An exception reply is deleted, and `reply` becomes null. Then the exception
    /// of its error code is thrown. If no exception belongs to the code, the code is returned. A reply that
    /// cannot be read is also deleted, and the reader's exception is thrown.
    static uint32_t CheckTransferObjReply(std::unique_ptr<POSTransferObj>& reply);

  private:
    POSOutcome checkInterfaceVersion();
    std::unique_ptr<POSTransferObj> sendAndCheck(POSTransferObj& request);
    POSOutcome sendForOutcome(POSTransferObj& request);
    POSResult<ByteBlock> sendForBlock(POSTransferObj& request, uint32_t resultField);

    POSTransferObjForwarder* forwarder_ = nullptr;
};

}  // namespace dovrel

// POSTransferObjTrader: turns operations into requests. It packs the fields of each command, sends the
// request through the forwarder, checks the reply and unpacks it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "InterProcessCommunication/POSFieldForms.h"
#include "serialization/Identifiers.h"

namespace dovrel {

class POSTransferObjForwarder;

/// The content of the server's reply to a registration.
struct POSRegistration {
    uint32_t applicationId = 0;  ///< identifies the application in every later request
    bool checksClasses = false;  ///< the client must check instantiations against the registered classes
};

/// The class has one operation per command. Each operation sends exactly one request through the forwarder
/// and blocks until the reply arrives. (A registration first connects and checks the interface version.)
///
/// An operation returns true if the reply is a normal one. It returns false if the reply has an error code
/// for which no exception is thrown. Otherwise it throws a pointer to a new CPPException, which the
/// catching code owns:
///
/// - the exception that belongs to the error code of the reply;
/// - the reader's exception if the reply cannot be read;
/// - a plain CPPException for an identifier that does not have 16 bytes. An identifier of the wrong size in
///   a request is rejected before anything is sent. In a reply it makes the reply unreadable.
///
/// If memory runs out, an operation throws std::bad_alloc. Outputs are changed only if it returns true.
///
/// A request has the fields of POSCommands.h, in the order of that table. Replies are deleted before an
/// operation returns. The trader takes no lock: one thread at a time. Output blocks are allocated with new[];
/// the caller deletes them with delete[]. An empty result is null with the length 0. A pointer to bytes may
/// be null if their length is 0.
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
    bool registerApplication(const std::string& name, const std::vector<CPPClassID>& classes,
                             const CPPByteArray& options, POSRegistration& registration);
    bool unregisterApplication(uint32_t applicationId);
    bool instantiateObject(uint32_t applicationId, const CPPClassID& classId, uint32_t executer,
                           CPPObjectID& objectId, POSServerMessage& message);
    bool deleteObject(uint32_t applicationId, const CPPObjectID& objectId);
    /// A null `executer` means no executer.
    bool callMethod(uint32_t applicationId, const ProtectedExecuterID* executer, const CPPObjectID& objectId,
                    const char* methodName, const uint8_t* parameters, uint32_t parameterLength,
                    uint8_t** result, uint32_t* resultLength, POSServerMessage& message);
    bool executeCommand(uint32_t applicationId, const uint8_t* command, uint32_t commandLength,
                        const uint8_t* argument, uint32_t argumentLength, uint8_t** result,
                        uint32_t* resultLength);
    bool getInformation(uint32_t applicationId, const uint8_t* request, uint32_t requestLength,
                        uint8_t** info, uint32_t* infoLength);

    /// Checks a reply; every reply passes through this function. A normal reply is left as it is, and its
    /// message kind is returned. An exception reply is deleted, and `reply` becomes null. Then the exception
    /// of its error code is thrown. If no exception belongs to the code, the code is returned. A reply that
    /// cannot be read is also deleted, and the reader's exception is thrown.
    static uint32_t CheckTransferObjReply(std::unique_ptr<POSTransferObj>& reply);

  private:
    bool checkInterfaceVersion();
    std::unique_ptr<POSTransferObj> exchange(POSTransferObj& request);
    bool exchangeForBlock(POSTransferObj& request, uint32_t id, uint8_t** block, uint32_t* length);

    POSTransferObjForwarder* forwarder_ = nullptr;
};

}  // namespace dovrel

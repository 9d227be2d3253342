// The one place that turns operations into requests: packs the fields of each command, has them carried to
// the server, checks the answer and unpacks it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "InterProcessCommunication/POSFieldForms.h"
#include "serialization/Identifiers.h"

namespace dovrel {

class POSTransferObjForwarder;

/// What the server answers to a registration.
struct POSRegistration {
    uint32_t applicationId = 0;  ///< the session identifier that names the application in every later request
    bool checksClasses = false;  ///< instantiation is to be checked against the registered classes
};

/// One operation per command. Each sends exactly one request through the forwarder (registration: the
/// handshake and the version check first) and blocks until its answer is there.
///
/// They return true when the server answered normally, and false when it answered with an error code that
/// stands for no exception. They throw a pointer to a new CPPException, which the catcher owns: of the class
/// that belongs to the server's error code, or of the reader for an answer that cannot be read, or a plain
/// one for an identifier that is not of 16 bytes. One that was given is found before anything is sent, one
/// that the server answers counts as an answer that cannot be read. Running out of memory is std::bad_alloc.
/// Unless an operation returns true, the outputs are as they were.
///
/// Requests hold the fields of POSCommands.h in the order of that table. Answers are released before an
/// operation ends. The trader locks nothing: one thread at a time. Output blocks come from array new; the
/// caller deletes them as arrays (null and length 0 for an empty result). A pointer to bytes may be null when
/// their length is 0.
class POSTransferObjTrader {
  public:
    POSTransferObjTrader() = default;
    POSTransferObjTrader(const POSTransferObjTrader&) = delete;
    POSTransferObjTrader& operator=(const POSTransferObjTrader&) = delete;
    virtual ~POSTransferObjTrader() = default;

    /// The forwarder is not owned and must outlive every operation.
    void setForwarder(POSTransferObjForwarder* forwarder) { forwarder_ = forwarder; }
    POSTransferObjForwarder* getForwarder() const { return forwarder_; }

    /// Connects, checks the interface version, registers. `options` travel as they are. Throws a CPPException
    /// when the server has another interface version.
    bool registerApplication(const std::string& name, const std::vector<CPPClassID>& classes,
                             const CPPByteArray& options, POSRegistration& registration);
    bool unregisterApplication(uint32_t applicationId);
    bool instantiateObject(uint32_t applicationId, const CPPClassID& classId, uint32_t executer,
                           CPPObjectID& objectId, POSServerMessage& message);
    bool deleteObject(uint32_t applicationId, const CPPObjectID& objectId);
    /// `executer` null: no executer.
    bool callMethod(uint32_t applicationId, const ProtectedExecuterID* executer, const CPPObjectID& objectId,
                    const char* methodName, const uint8_t* parameters, uint32_t parameterLength,
                    uint8_t** result, uint32_t* resultLength, POSServerMessage& message);
    bool executeCommand(uint32_t applicationId, const uint8_t* command, uint32_t commandLength,
                        const uint8_t* argument, uint32_t argumentLength, uint8_t** result,
                        uint32_t* resultLength);
    bool getInformation(uint32_t applicationId, const uint8_t* request, uint32_t requestLength,
                        uint8_t** info, uint32_t* infoLength);

    /// What every answer goes through. A normal answer stays as it is, and its message kind is returned. An
    /// exception answer is released (null afterwards); then the exception of its error code is thrown or, for
    /// a code that stands for none, the code is returned. An answer that cannot be read is released, too, and
    /// throws what the reader throws.
    static uint32_t CheckTransferObjReply(std::unique_ptr<POSTransferObj>& reply);

  private:
    bool checkInterfaceVersion();
    std::unique_ptr<POSTransferObj> exchange(POSTransferObj& request);
    bool exchangeForBlock(POSTransferObj& request, uint32_t id, uint8_t** block, uint32_t* length);

    POSTransferObjForwarder* forwarder_ = nullptr;
};

}  // namespace dovrel

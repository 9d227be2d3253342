// The one place that turns operations into requests: packs the fields of each command, has them carried to the server,
// checks the answer and unpacks it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "serialization/Identifiers.h"

namespace dovrel {

class POSTransferObj;
class POSTransferObjForwarder;

/// What the server answers to a registration.
struct POSRegistration {
    uint32_t applicationId = 0;     ///< the session identifier that names the application in every later request
    bool checksClasses = false;     ///< instantiation is to be checked against the registered classes
};

/// The message for the user that some answers carry.
struct POSServerMessage {
    uint32_t flags = 0;   ///< non-zero when a message is present
    std::string text;     ///< in the system's encoding, may be empty

    bool isPresent() const { return flags != 0; }
};

/// One operation per command. All of them
///  - send exactly one request through the forwarder (registration: the handshake and the version check first) and block
///    until its answer is there;
///  - return true when the server answered normally, and false when it answered with an error code that stands for no
///    exception: then nothing was read and the outputs are as they were;
///  - throw a pointer to a new CPPException of the class that belongs to the server's error code, or of the reader for an
///    answer that cannot be read; the catcher owns it and the outputs are as they were.
/// The trader locks nothing: one thread at a time. Output blocks come from array new; the caller deletes them as arrays
/// (null and length 0 for an empty result).
class POSTransferObjTrader {
  public:
    POSTransferObjTrader() = default;
    POSTransferObjTrader(const POSTransferObjTrader&) = delete;
    POSTransferObjTrader& operator=(const POSTransferObjTrader&) = delete;
    virtual ~POSTransferObjTrader() = default;

    /// The forwarder is not owned and must outlive every operation.
    void setForwarder(POSTransferObjForwarder* forwarder) { forwarder_ = forwarder; }
    POSTransferObjForwarder* getForwarder() const { return forwarder_; }

    /// Connects, checks the interface version, registers. `options` travel as they are.
    bool registerApplication(const std::string& name, const std::vector<CPPClassID>& classes,
                             const CPPByteArray& options, POSRegistration& registration);
    bool unregisterApplication(uint32_t applicationId);
    bool instantiateObject(uint32_t applicationId, const CPPClassID& classId, uint32_t executer,
                           CPPObjectID& objectId, POSServerMessage& message);
    bool deleteObject(uint32_t applicationId, const CPPObjectID& objectId);
    /// `executer` null: no executer. `parameters` may be null when the length is 0.
    bool callMethod(uint32_t applicationId, const ProtectedExecuterID* executer, const CPPObjectID& objectId,
                    const char* methodName, const uint8_t* parameters, uint32_t parameterLength, uint8_t** result,
                    uint32_t* resultLength, POSServerMessage& message);
    bool executeCommand(uint32_t applicationId, const uint8_t* command, uint32_t commandLength,
                        const uint8_t* argument, uint32_t argumentLength, uint8_t** result,
                        uint32_t* resultLength);
    bool getInformation(uint32_t applicationId, const uint8_t* request, uint32_t requestLength, uint8_t** info,
                        uint32_t* infoLength);

  private:
    POSTransferObjForwarder* forwarder_ = nullptr;
};

}  // namespace dovrel

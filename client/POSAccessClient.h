// POSAccessClient: the registry of this process's applications and the client's side of every operation. An
// operation calls the trader and records the server's reply.
//
// If the outcome of an operation is not POSOutcome::kDone, nothing was recorded. Failures are thrown, as a
// pointer to a CPPException that the catching code owns or as std::bad_alloc. Only one thread at a time may
// use a client; the session's lock ensures that.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "InterProcessCommunication/POSCommands.h"
#include "InterProcessCommunication/POSTransferObjTrader.h"
#include "client/GetInfoCommand.h"

namespace dovrel {

/// The client's record of one registered application.
struct POSApplicationRecord {
    std::string name;                 ///< the name that the host passed; failure messages show it
    std::vector<CPPClassID> classes;  ///< in the order of registration
    bool checksClasses = false;       ///< the server wants instantiations checked against `classes`

    /// Returns whether the application registered the class. Compares the identifiers byte by byte.
    bool hasClass(const CPPClassID& classId) const;
};

class POSAccessClient {
  public:
    /// The name of an application identifier that is not registered.
    static constexpr char kUnknownApplication[] = "Unknown Application";

    POSAccessClient();

    /// Sets the forwarder, which carries all requests. The forwarder is not owned. It must be set before the
    /// first operation and must outlive the last one.
    void setForwarder(POSTransferObjForwarder* forwarder) { trader_->setForwarder(forwarder); }

    bool isRegistered(uint32_t applicationId) const { return applications_.count(applicationId) != 0; }
    uint32_t applicationCount() const { return static_cast<uint32_t>(applications_.size()); }

    /// Returns the registered name, or kUnknownApplication. The pointer is valid until the application is
    /// unregistered or registered again.
    const char* applicationName(uint32_t applicationId) const;

    /// Registers with the server and records the application under the identifier in the reply, which it
    /// returns. If the server returns an identifier that is already recorded, the new record replaces the
    /// old one.
    POSResult<uint32_t> registerApplication(const char* name, std::vector<CPPClassID> classes,
                                            const CPPByteArray& options);

    /// Unregisters the application in the server, then removes its record.
    POSOutcome unregisterApplication(uint32_t applicationId);

    /// Creates an object. If no executer is named and the server asked for the check at registration, throws a
    /// new CPPException for a class that the application did not register.
    POSResult<POSInstance> instantiateObject(uint32_t applicationId, const CPPClassID& classId,
                                             uint32_t executer);

    POSResult<POSMethodReply> callMethod(uint32_t applicationId, const MethodCall& call) {
        return trader_->callMethod(applicationId, call);
    }
    POSOutcome deleteObject(uint32_t applicationId, const CPPObjectID& objectId) {
        return trader_->deleteObject(applicationId, objectId);
    }
    POSResult<ByteBlock> executeCommand(uint32_t applicationId, const Command& command) {
        return trader_->executeCommand(applicationId, command);
    }

    /// Fetches an information block. The application need not be registered. The request for the interface
    /// version is served here, without the server.
    POSResult<ByteBlock> getInformation(uint32_t applicationId, const GetInfoCommand& request);

    /// Makes the forwarder forget its connection if no application is registered.
    void disconnectIfUnused() noexcept;

    /// Unregisters all applications, in ascending order of their identifiers as signed numbers. If there are
    /// none, it sends nothing. The first exception ends it silently, and the remaining records stay. An error
    /// code for which no exception is thrown does not end it.
    void shutDown() noexcept;

  private:
    struct SignedOrder {
        bool operator()(uint32_t left, uint32_t right) const {
            return static_cast<int32_t>(left) < static_cast<int32_t>(right);
        }
    };
    using Applications = std::map<uint32_t, POSApplicationRecord, SignedOrder>;

    void checkClass(uint32_t applicationId, const CPPClassID& classId, uint32_t executer) const;
    void unregisterAll();

    std::unique_ptr<POSTransferObjTrader> trader_;
    /// Part of the layout of this class; never set and never read.
    [[maybe_unused]] uint8_t reservedFlags_[2] = {0, 0};
    Applications applications_;
};

}  // namespace dovrel

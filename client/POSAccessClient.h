// POSAccessClient: the registry of this process's applications and the client's side of every operation. An
// operation checks its arguments, calls the trader and records the server's reply.
//
// The operations take the host's pointers as they are. An operation returns true on success. It returns false
// if the reply has an error code for which no exception is thrown; then nothing was recorded. Every other
// failure is thrown, as a pointer to a CPPException that the catching code owns or as std::bad_alloc. Outputs
// are written only on success. Only one thread at a time may use a client; the session's lock ensures that.
#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include "InterProcessCommunication/POSCommands.h"
#include "InterProcessCommunication/POSTransferObjTrader.h"
#include "client/POSApplicationRecord.h"

namespace dovrel {

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

    /// Registers with the server and records the application under the identifier in the reply. If the server
    /// returns an identifier that is already recorded, the new record replaces the old one.
    bool registerApplication(const char* name, void* const* classList, uint32_t classCount,
                             const void* options, uint32_t optionsLength, uint32_t& applicationId);

    /// Unregisters the application in the server, then removes its record.
    bool unregisterApplication(uint32_t applicationId);

    /// Creates an object. `*objectId` receives a new block of POS_IDENTIFIER_SIZE bytes from malloc. If no
    /// executer is named and the server asked for the check at registration, a class that the application did
    /// not register is a failure.
    bool instantiateObject(uint32_t applicationId, void* const* classId, void** objectId, uint32_t executer,
                           POSServerMessage& message);

    bool callMethod(uint32_t applicationId, void* const* executerId, void* const* objectId,
                    const char* methodName, const uint8_t* parameters, uint32_t parameterLength,
                    uint8_t** result, uint32_t* resultLength, POSServerMessage& message);

    bool deleteObject(uint32_t applicationId, void* const* objectId);

    bool executeCommand(uint32_t applicationId, void* const* command, uint32_t commandLength,
                        void* const* argument, uint32_t argumentLength, uint8_t** result,
                        uint32_t* resultLength);

    /// Fetches an information block. The application need not be registered. The request for the interface
    /// version is served here, without the server.
    bool getInformation(uint32_t applicationId, const void* request, uint32_t requestLength, uint8_t** info,
                        int32_t* infoLength);

    /// Makes the forwarder forget its connection if no application is registered.
    void disconnectIfUnused() noexcept;

    /// Unregisters all applications, in ascending order of their identifiers as signed numbers. If there are
    /// none, it sends nothing. It stops silently at the first failure and keeps the remaining records.
    void shutDown() noexcept;

  private:
    struct SignedOrder {
        bool operator()(uint32_t left, uint32_t right) const {
            return static_cast<int32_t>(left) < static_cast<int32_t>(right);
        }
    };
    using Applications = std::map<uint32_t, POSApplicationRecord, SignedOrder>;

    void checkClass(uint32_t applicationId, const CPPClassID& classId, uint32_t executer) const;
    bool unregisterAll();

    std::unique_ptr<POSTransferObjTrader> trader_;
    /// Part of the layout of this class; never set and never read.
    [[maybe_unused]] uint8_t reservedFlags_[2] = {0, 0};
    Applications applications_;
};

}  // namespace dovrel

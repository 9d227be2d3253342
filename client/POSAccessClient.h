// POSAccessClient: the registry of this process's applications, and the client's side of every operation:
// checks the arguments, hands over to the trader, records what the server answered.
//
// The operations take the host's pointers as they are. They return true on success and false when the server
// answered with an error code that stands for no exception; then nothing was recorded. Every other failure is
// thrown: a pointer to a CPPException, which the catcher owns, or std::bad_alloc. Outputs are written on
// success only. One thread at a time; the session's lock sees to that.
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
    /// What an identifier that is not registered is called.
    static constexpr char kUnknownApplication[] = "Unknown Application";

    POSAccessClient();

    /// The carrier of all requests. Not owned; must be set before the first operation and outlive the last.
    void setForwarder(POSTransferObjForwarder* forwarder) { trader_->setForwarder(forwarder); }

    bool isRegistered(uint32_t applicationId) const { return applications_.count(applicationId) != 0; }
    uint32_t applicationCount() const { return static_cast<uint32_t>(applications_.size()); }

    /// The registered name, or kUnknownApplication. Valid until the application is unregistered or registered
    /// anew.
    const char* applicationName(uint32_t applicationId) const;

    /// Registers with the server and records the application under the identifier that comes back. An
    /// identifier that the server hands out a second time gets the new record.
    bool registerApplication(const char* name, void* const* classList, uint32_t classCount,
                             const void* options, uint32_t optionsLength, uint32_t& applicationId);

    /// Unregisters in the server, then removes the record.
    bool unregisterApplication(uint32_t applicationId);

    /// `*objectId` receives a new block of POS_IDENTIFIER_SIZE bytes from malloc. Without an executer, and
    /// where the application's record asks for it, a class that the application did not register is a
    /// failure.
    bool instantiateObject(uint32_t applicationId, void* const* classId, void** objectId, uint32_t executer,
                           POSServerMessage& message);

    bool callMethod(uint32_t applicationId, void* const* executerId, void* const* objectId,
                    const char* methodName, const uint8_t* parameters, uint32_t parameterLength,
                    uint8_t** result, uint32_t* resultLength, POSServerMessage& message);

    bool deleteObject(uint32_t applicationId, void* const* objectId);

    bool executeCommand(uint32_t applicationId, void* const* command, uint32_t commandLength,
                        void* const* argument, uint32_t argumentLength, uint8_t** result,
                        uint32_t* resultLength);

    /// The application need not be registered. The request for the interface version is answered here.
    bool getInformation(uint32_t applicationId, const void* request, uint32_t requestLength, uint8_t** info,
                        int32_t* infoLength);

    /// Lets the forwarder forget its connection when no application is registered.
    void disconnectIfUnused() noexcept;

    /// Unregisters all applications in ascending order; without any nothing is sent. The first failure ends
    /// it, silently, and what is still recorded then stays.
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
    /// Part of the client's record, never set and never read.
    [[maybe_unused]] uint8_t reservedFlags_[2] = {0, 0};
    Applications applications_;
};

}  // namespace dovrel

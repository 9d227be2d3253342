// POSAccessUserInteraction: the session. Its operations are what the exported functions do, and have their
// names.
//
// Each operation waits for the session's lock without a limit, releases it on every way out, and runs in the
// frame of the dialog handler; so operations run one at a time, their alerts included, and nothing that is
// thrown leaves one. All return true on success. After a failure the outputs are null and 0; only the
// identifier of an application that was not registered is not touched. include/dovrel/pos.h is the contract
// of the arguments.
#pragma once

#include <cstdint>
#include <memory>

#include "client/POSAccessClient.h"
#include "client/POSAccessUIDialogHandler.h"
#include "client/SessionParts.h"
#include "platform/synchronization/Mutex.h"

namespace dovrel {

class POSAccessUserInteraction {
  public:
    /// The current-application word of a session in which no application is singled out.
    static constexpr uint32_t kNoCurrentApplication = 0xFFFFFFFF;

    /// Throws what the making of its parts throws.
    explicit POSAccessUserInteraction(const SessionParts& parts);

    POSAccessUserInteraction(const POSAccessUserInteraction&) = delete;
    POSAccessUserInteraction& operator=(const POSAccessUserInteraction&) = delete;
    virtual ~POSAccessUserInteraction();

    /// The carrier of all requests. Not owned; must be set before the first operation and outlive the last.
    void setForwarder(POSTransferObjForwarder* forwarder) { client_.setForwarder(forwarder); }

    /// The library's installed bundle; the texts are loaded here. Throws std::bad_alloc only.
    void setBundlePath(const std::string& bundlePath) { dialogHandler_.setBundlePath(bundlePath); }

    /// Unregisters what is still registered, silently. Takes no lock.
    void shutDown() noexcept { client_.shutDown(); }

    bool posRegisterApplicationWithClasses(const char* applicationName, void* const* classList,
                                           uint32_t classCount, const uint16_t* options,
                                           uint32_t optionsLength, uint32_t* applicationId) noexcept;
    bool posUnregisterApplication(uint32_t applicationId) noexcept;
    bool posInstantiateObject(uint32_t applicationId, void* const* classId, void** objectId) noexcept;
    /// The executer is not passed on.
    bool posInstantiateObjectOnExecuter(uint32_t applicationId, void* const* executerId, void* const* classId,
                                        void** objectId) noexcept;
    bool posCallMethod(uint32_t applicationId, void* const* objectId, const char* methodName,
                       const uint8_t* parameters, uint32_t parameterLength, uint8_t** result,
                       uint32_t* resultLength) noexcept;
    bool posCallMethodOnExecuter(uint32_t applicationId, void* const* executerId, void* const* objectId,
                                 const char* methodName, const uint8_t* parameters, uint32_t parameterLength,
                                 uint8_t** result, uint32_t* resultLength) noexcept;
    bool posDeleteObject(uint32_t applicationId, void* const* objectId) noexcept;
    bool posGetInfo(uint32_t applicationId, const void* request, uint32_t requestLength, uint8_t** info,
                    int32_t* infoLength) noexcept;
    bool posExecuteCMD(uint32_t applicationId, void* const* command, uint32_t commandLength,
                       void* const* argument, uint32_t argumentLength, uint8_t** result,
                       uint32_t* resultLength) noexcept;

    // For looking on. Not locked.
    const POSAccessClient& client() const { return client_; }
    const POSAccessUIDialogHandler& dialogHandler() const { return dialogHandler_; }
    uint32_t currentApplication() const { return currentApplication_; }

  private:
    /// If the application is not registered, nothing but the trace says so: the operation fails silently.
    bool isRegistered(uint32_t applicationId) const noexcept;

    template <typename Operation>
    bool runRegistered(uint32_t applicationId, const Operation& operation) noexcept;

    POSAccessClient client_;
    POSAccessUIDialogHandler dialogHandler_;
    std::unique_ptr<Mutex> lock_;
    uint32_t currentApplication_ = kNoCurrentApplication;
};

}  // namespace dovrel

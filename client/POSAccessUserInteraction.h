// POSAccessUserInteraction: the session. Each operation does the work of the exported function of the same
// name. The contract of the arguments is in include/dovrel/pos.h.
//
// An operation takes the session's lock, without a time-out, and releases it before it returns. It runs
// through the dialog handler. So operations, including their alerts, run one at a time, and no operation
// throws. An operation returns true on success. After a failure it sets its outputs to null and 0, except the
// application identifier of a registration, which it leaves unchanged.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "InterProcessCommunication/POSTransferObjForwarder.h"
#include "client/POSAccessClient.h"
#include "client/POSAccessUIDialogHandler.h"
#include "platform/synchronization/Mutex.h"
#include "ui/alerts/MessageDialog.h"

namespace dovrel {

/// The functions that create the parts of a session. A host's session uses the platform's parts; tests use
/// their own. Each function is called once per session. If one throws, the session is not created.
struct SessionParts {
    std::function<std::unique_ptr<POSTransferObjForwarder>()> createForwarder;
    std::function<std::unique_ptr<MessageDialog>()> createDialog;
    std::function<std::unique_ptr<Mutex>()> createLock;
};

class POSAccessUserInteraction {
  public:
    /// The value of the current application when no application is selected.
    static constexpr uint32_t kNoCurrentApplication = 0xFFFFFFFF;

    /// Creates the dialog and the lock. Throws what the functions in `parts` throw.
    explicit POSAccessUserInteraction(const SessionParts& parts);

    POSAccessUserInteraction(const POSAccessUserInteraction&) = delete;
    POSAccessUserInteraction& operator=(const POSAccessUserInteraction&) = delete;
    virtual ~POSAccessUserInteraction();

    /// Sets the forwarder, which carries all requests. The forwarder is not owned. It must be set before the
    /// first operation and must outlive the last one.
    void setForwarder(POSTransferObjForwarder* forwarder) { client_.setForwarder(forwarder); }

    /// Uses the library's installed bundle, whose path is given: reads its version for the error log and loads
    /// the texts. Throws only std::bad_alloc.
    void useBundle(const std::string& bundlePath) { dialogHandler_.useBundle(bundlePath); }

    /// Unregisters the applications that are still registered. Shows nothing and takes no lock.
    void shutDown() noexcept { client_.shutDown(); }

    bool posRegisterApplicationWithClasses(const char* applicationName, void* const* classList,
                                           uint32_t classCount, const uint16_t* options,
                                           uint32_t optionsLength, uint32_t* applicationId) noexcept;
    bool posUnregisterApplication(uint32_t applicationId) noexcept;
    bool posInstantiateObject(uint32_t applicationId, void* const* classId, void** objectId) noexcept;
    /// The executer is ignored.
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

    // For tests. Takes no lock.
    const POSAccessClient& client() const { return client_; }
    const POSAccessUIDialogHandler& dialogHandler() const { return dialogHandler_; }
    uint32_t currentApplication() const { return currentApplication_; }

  private:
    /// Returns whether the application is registered. If it is not, the operation fails silently, and only
    /// the trace reports it.
    bool isRegistered(uint32_t applicationId) const noexcept;

    template <typename Operation>
    bool runRegistered(uint32_t applicationId, const Operation& operation) noexcept;

    POSAccessClient client_;
    POSAccessUIDialogHandler dialogHandler_;
    std::unique_ptr<Mutex> lock_;
    uint32_t currentApplication_ = kNoCurrentApplication;
};

}  // namespace dovrel

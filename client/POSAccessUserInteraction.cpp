#include "client/POSAccessUserInteraction.h"

#include <new>
#include <string>

#include "client/Attempt.h"
#include "client/HostArguments.h"
#include "platform/trace/Trace.h"

namespace dovrel {

namespace {

/// Locks the session's mutex; the destructor unlocks it.
class SessionLock {
  public:
    explicit SessionLock(Mutex& mutex) noexcept : mutex_(mutex), isHeld_(mutex.lock(kWaitForever)) {}
    SessionLock(const SessionLock&) = delete;
    SessionLock& operator=(const SessionLock&) = delete;
    ~SessionLock() {
        if (isHeld_) mutex_.unlock();
    }

    /// Returns false if the platform could not lock the mutex. Then the caller must not use the session.
    bool isHeld() const { return isHeld_; }

  private:
    Mutex& mutex_;
    const bool isHeld_;
};

/// A copy of the name that a host passes at registration. The host may change its own text while the call
/// waits for the lock or while an alert is open.
class ApplicationName {
  public:
    /// Null counts as "". If memory runs out, the object holds no copy.
    explicit ApplicationName(const char* given) noexcept : given_(given != nullptr ? given : "") {
        isCopied_ = attempt([this] {
                        copy_ = given_;
                        return true;
                    }).succeeded;
    }

    /// Returns the name for alerts: the copy, or the host's own text if there is no copy.
    const char* text() const { return isCopied_ ? copy_.c_str() : given_; }

    /// Throws std::bad_alloc if the name could not be copied.
    void requireCopy() const {
        if (!isCopied_) throw std::bad_alloc();
    }

  private:
    const char* const given_;
    std::string copy_;
    bool isCopied_ = false;
};

/// Sets an output to null or 0, unless the pointer to it is null.
template <typename Value>
void clear(Value* output) noexcept {
    if (output != nullptr) *output = Value();
}

/// Returns `succeeded`. After a failure it clears the outputs, and only then, because the host may pass the
/// same variables as inputs and outputs.
template <typename Length>
bool outcome(bool succeeded, uint8_t** block, Length* length) noexcept {
    if (succeeded) return true;
    clear(block);
    clear(length);
    return false;
}

}  // namespace

POSAccessUserInteraction::POSAccessUserInteraction(const SessionParts& parts)
    : dialogHandler_(parts.createDialog()), lock_(parts.createLock()) {
    dialogHandler_.setClient(&client_);
}

POSAccessUserInteraction::~POSAccessUserInteraction() = default;

bool POSAccessUserInteraction::posRegisterApplicationWithClasses(const char* applicationName,
                                                                 void* const* classList, uint32_t classCount,
                                                                 const uint16_t* options,
                                                                 uint32_t optionsLength,
                                                                 uint32_t* applicationId) noexcept {
    const ApplicationName copiedName(applicationName);
    const char* const name = copiedName.text();
    const SessionLock lock(*lock_);
    if (!lock.isHeld()) return false;
    dialogHandler_.readOptions(options, optionsLength);

    const bool hasOptions = optionsLength >= sizeof *options && optionsLength % sizeof *options == 0;
    const uint32_t optionBytes = options != nullptr ? optionsLength : 0;
    uint32_t registeredId = 0;
    const bool registered = dialogHandler_.runRegistration(name, [&] {
        copiedName.requireCopy();
        requireNonNull(applicationId);
        if (hasOptions) requireNonNull(options);
        dialogHandler_.prepareRegistration(name);
        return client_.registerApplication(name, classList, classCount, options, optionBytes, registeredId);
    });
    if (!registered) {
        client_.disconnectIfUnused();
        return false;
    }
    dialogHandler_.completeRegistration(registeredId);
    *applicationId = registeredId;
    currentApplication_ = kNoCurrentApplication;
    return true;
}

bool POSAccessUserInteraction::posUnregisterApplication(uint32_t applicationId) noexcept {
    const SessionLock lock(*lock_);
    if (!lock.isHeld()) return false;
    const bool unregistered = isRegistered(applicationId) && dialogHandler_.run(applicationId, [&] {
        return client_.unregisterApplication(applicationId);
    });
    if (unregistered) dialogHandler_.forgetApplication(applicationId);
    client_.disconnectIfUnused();
    return unregistered;
}

bool POSAccessUserInteraction::isRegistered(uint32_t applicationId) const noexcept {
    if (client_.isRegistered(applicationId)) return true;
    Trace::write(TraceArea::kSession, TraceLevel::kFailures,
                 [&] { return "no application is registered as " + std::to_string(applicationId); });
    return false;
}

template <typename Operation>
bool POSAccessUserInteraction::runRegistered(uint32_t applicationId, const Operation& operation) noexcept {
    const SessionLock lock(*lock_);
    return lock.isHeld() && isRegistered(applicationId) && dialogHandler_.run(applicationId, operation);
}

bool POSAccessUserInteraction::posInstantiateObject(uint32_t applicationId, void* const* classId,
                                                    void** objectId) noexcept {
    const bool succeeded = runRegistered(applicationId, [&] {
        POSServerMessage message;
        if (!client_.instantiateObject(applicationId, classId, objectId, kNoExecuter, message)) return false;
        dialogHandler_.showServerMessage(applicationId, message);
        return true;
    });
    if (!succeeded) clear(objectId);
    return succeeded;
}

bool POSAccessUserInteraction::posInstantiateObjectOnExecuter(uint32_t applicationId,
                                                              void* const* /*executerId*/,
                                                              void* const* classId,
                                                              void** objectId) noexcept {
    return posInstantiateObject(applicationId, classId, objectId);
}

bool POSAccessUserInteraction::posCallMethod(uint32_t applicationId, void* const* objectId,
                                             const char* methodName, const uint8_t* parameters,
                                             uint32_t parameterLength, uint8_t** result,
                                             uint32_t* resultLength) noexcept {
    return posCallMethodOnExecuter(applicationId, nullptr, objectId, methodName, parameters, parameterLength,
                                   result, resultLength);
}

bool POSAccessUserInteraction::posCallMethodOnExecuter(uint32_t applicationId, void* const* executerId,
                                                       void* const* objectId, const char* methodName,
                                                       const uint8_t* parameters, uint32_t parameterLength,
                                                       uint8_t** result, uint32_t* resultLength) noexcept {
    const bool succeeded = runRegistered(applicationId, [&] {
        POSServerMessage message;
        if (!client_.callMethod(applicationId, executerId, objectId, methodName, parameters, parameterLength,
                                result, resultLength, message)) {
            return false;
        }
        dialogHandler_.showServerMessage(applicationId, message);
        return true;
    });
    return outcome(succeeded, result, resultLength);
}

bool POSAccessUserInteraction::posDeleteObject(uint32_t applicationId, void* const* objectId) noexcept {
    return runRegistered(applicationId, [&] { return client_.deleteObject(applicationId, objectId); });
}

bool POSAccessUserInteraction::posGetInfo(uint32_t applicationId, const void* request, uint32_t requestLength,
                                          uint8_t** info, int32_t* infoLength) noexcept {
    const SessionLock lock(*lock_);
    const bool succeeded = lock.isHeld() && dialogHandler_.run(applicationId, [&] {
        return client_.getInformation(applicationId, request, requestLength, info, infoLength);
    });
    return outcome(succeeded, info, infoLength);
}

bool POSAccessUserInteraction::posExecuteCMD(uint32_t applicationId, void* const* command,
                                             uint32_t commandLength, void* const* argument,
                                             uint32_t argumentLength, uint8_t** result,
                                             uint32_t* resultLength) noexcept {
    const bool succeeded = runRegistered(applicationId, [&] {
        return client_.executeCommand(applicationId, command, commandLength, argument, argumentLength, result,
                                      resultLength);
    });
    return outcome(succeeded, result, resultLength);
}

}  // namespace dovrel

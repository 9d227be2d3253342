#include "client/POSAccessUserInteraction.h"

#include <new>
#include <string>
#include <utility>

#include "client/HostArguments.h"
#include "client/OperationResult.h"
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
        // Not with the session's functions for failures: their notes are protected by the lock, which is not
        // held yet.
        try {
            copy_ = given_;
            isCopied_ = true;
        } catch (const std::bad_alloc&) {
        }
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
template <typename... Outputs>
bool clearUnless(bool succeeded, Outputs*... outputs) noexcept {
    if (!succeeded) (clear(outputs), ...);
    return succeeded;
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
        const POSResult<uint32_t> result = client_.registerApplication(
            name, copyClassList(classList, classCount), copyBytes(options, optionBytes));
        registeredId = result.value;
        return result.outcome;
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
        requireNonNull(objectId);
        const auto classKey = copyIdentifier<CPPClassID>(classId);
        // Allocated before the request is sent. If the allocation failed afterwards, the object would stay in
        // the server and nobody would know its identifier.
        ObjectIdBlock block = allocateObjectId();
        const POSResult<POSInstance> created =
            client_.instantiateObject(applicationId, classKey, kNoExecuter);
        if (created.outcome == POSOutcome::kDone) {
            created.value.object.readBytes(0, block.get(), POS_IDENTIFIER_SIZE);
            *objectId = block.release();
            dialogHandler_.showServerMessage(applicationId, created.value.message);
        }
        return created.outcome;
    });
    return clearUnless(succeeded, objectId);
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
        requireNonNull(result);
        requireNonNull(resultLength);
        POSResult<POSMethodReply> reply = client_.callMethod(
            applicationId, makeMethodCall(executerId, objectId, methodName, parameters, parameterLength));
        if (reply.outcome == POSOutcome::kDone) {
            giveToHost(std::move(reply.value.result), result, resultLength);
            dialogHandler_.showServerMessage(applicationId, reply.value.message);
        }
        return reply.outcome;
    });
    return clearUnless(succeeded, result, resultLength);
}

bool POSAccessUserInteraction::posDeleteObject(uint32_t applicationId, void* const* objectId) noexcept {
    return runRegistered(applicationId, [&] {
        return client_.deleteObject(applicationId, copyIdentifier<CPPObjectID>(objectId));
    });
}

bool POSAccessUserInteraction::posGetInfo(uint32_t applicationId, const void* request, uint32_t requestLength,
                                          uint8_t** info, int32_t* infoLength) noexcept {
    const SessionLock lock(*lock_);
    const bool succeeded = lock.isHeld() && dialogHandler_.run(applicationId, [&] {
        requireNonNull(request);
        requireNonNull(info);
        requireNonNull(infoLength);
        POSResult<ByteBlock> reply =
            client_.getInformation(applicationId, GetInfoCommand(request, requestLength));
        if (reply.outcome == POSOutcome::kDone) giveToHost(std::move(reply.value), info, infoLength);
        return reply.outcome;
    });
    return clearUnless(succeeded, info, infoLength);
}

bool POSAccessUserInteraction::posExecuteCMD(uint32_t applicationId, void* const* command,
                                             uint32_t commandLength, void* const* argument,
                                             uint32_t argumentLength, uint8_t** result,
                                             uint32_t* resultLength) noexcept {
    const bool succeeded = runRegistered(applicationId, [&] {
        requireNonNull(result);
        requireNonNull(resultLength);
        POSResult<ByteBlock> reply = client_.executeCommand(
            applicationId, makeCommand(command, commandLength, argument, argumentLength));
        if (reply.outcome == POSOutcome::kDone) giveToHost(std::move(reply.value), result, resultLength);
        return reply.outcome;
    });
    return clearUnless(succeeded, result, resultLength);
}

}  // namespace dovrel

#include "client/POSAccessClient.h"

#include <cstdlib>
#include <new>
#include <utility>
#include <vector>

#include "InterProcessCommunication/POSTransferObjForwarder.h"
#include "client/Attempt.h"
#include "client/GetInfoCommand.h"
#include "client/HostArguments.h"
#include "settings/MultiLanguageSupport.h"
#include "settings/TextKeys.h"

namespace dovrel {

namespace {

struct FreeBlock {
    void operator()(void* block) const { std::free(block); }
};
using ObjectIdBlock = std::unique_ptr<void, FreeBlock>;

ObjectIdBlock newObjectIdBlock() {
    ObjectIdBlock block(std::malloc(POS_IDENTIFIER_SIZE));
    if (!block) throw std::bad_alloc();
    return block;
}

}  // namespace

POSAccessClient::POSAccessClient() : trader_(std::make_unique<POSTransferObjTrader>()) {}

const char* POSAccessClient::applicationName(uint32_t applicationId) const {
    const auto found = applications_.find(applicationId);
    return found != applications_.end() ? found->second.name.c_str() : kUnknownApplication;
}

bool POSAccessClient::registerApplication(const char* name, void* const* classList, uint32_t classCount,
                                          const void* options, uint32_t optionsLength,
                                          uint32_t& applicationId) {
    // All memory is allocated before the request is sent, because nothing may fail after the server has
    // registered the application.
    Applications pending;
    POSApplicationRecord& record = pending[0];
    record.name = name;
    record.classes = classesOfList(classList, classCount);

    POSRegistration registration;
    const CPPByteArray optionBytes = copyOfBytes(options, optionsLength);
    if (!trader_->registerApplication(record.name, record.classes, optionBytes, registration)) return false;
    record.checksClasses = registration.checksClasses;

    auto node = pending.extract(pending.begin());
    node.key() = registration.applicationId;
    applications_.erase(registration.applicationId);
    applications_.insert(std::move(node));
    applicationId = registration.applicationId;
    return true;
}

bool POSAccessClient::unregisterApplication(uint32_t applicationId) {
    if (!trader_->unregisterApplication(applicationId)) return false;
    applications_.erase(applicationId);
    return true;
}

bool POSAccessClient::instantiateObject(uint32_t applicationId, void* const* classId, void** objectId,
                                        uint32_t executer, POSServerMessage& message) {
    requireNonNull(objectId);
    const CPPClassID classKey = identifierOfHandle<CPPClassID>(classId);
    checkClass(applicationId, classKey, executer);

    // Allocated before the request is sent. If the allocation failed afterwards, the object would stay in the
    // server and nobody would know its identifier.
    ObjectIdBlock block = newObjectIdBlock();
    CPPObjectID objectKey;
    if (!trader_->instantiateObject(applicationId, classKey, executer, objectKey, message)) return false;
    objectKey.readBytes(0, block.get(), POS_IDENTIFIER_SIZE);
    *objectId = block.release();
    return true;
}

void POSAccessClient::checkClass(uint32_t applicationId, const CPPClassID& classId, uint32_t executer) const {
    const auto found = applications_.find(applicationId);
    if (executer != kNoExecuter || found == applications_.end() || !found->second.checksClasses) return;
    if (!found->second.hasClass(classId)) {
        throw new CPPException(MultiLanguageSupport::getText(kDllClassNotRegistered).c_str());
    }
}

bool POSAccessClient::callMethod(uint32_t applicationId, void* const* executerId, void* const* objectId,
                                 const char* methodName, const uint8_t* parameters, uint32_t parameterLength,
                                 uint8_t** result, uint32_t* resultLength, POSServerMessage& message) {
    requireNonNull(methodName);
    requireBytes(parameters, parameterLength);
    requireNonNull(result);
    requireNonNull(resultLength);
    const CPPObjectID objectKey = identifierOfHandle<CPPObjectID>(objectId);
    if (!namesExecuter(executerId)) {
        return trader_->callMethod(applicationId, nullptr, objectKey, methodName, parameters, parameterLength,
                                   result, resultLength, message);
    }
    const auto executer = identifierOfHandle<ProtectedExecuterID>(executerId);
    return trader_->callMethod(applicationId, &executer, objectKey, methodName, parameters, parameterLength,
                               result, resultLength, message);
}

bool POSAccessClient::deleteObject(uint32_t applicationId, void* const* objectId) {
    return trader_->deleteObject(applicationId, identifierOfHandle<CPPObjectID>(objectId));
}

bool POSAccessClient::executeCommand(uint32_t applicationId, void* const* command, uint32_t commandLength,
                                     void* const* argument, uint32_t argumentLength, uint8_t** result,
                                     uint32_t* resultLength) {
    requireNonNull(result);
    requireNonNull(resultLength);
    return trader_->executeCommand(applicationId, bytesOfHandle(command, commandLength), commandLength,
                                   bytesOfHandle(argument, argumentLength), argumentLength, result,
                                   resultLength);
}

bool POSAccessClient::getInformation(uint32_t applicationId, const void* request, uint32_t requestLength,
                                     uint8_t** info, int32_t* infoLength) {
    requireNonNull(request);
    requireNonNull(info);
    requireNonNull(infoLength);
    const GetInfoCommand command(request, requestLength);
    if (command.asksForInterfaceVersion()) {
        *info = GetInfoCommand::interfaceVersionBlock().release();
        *infoLength = GetInfoCommand::kInterfaceVersionBlockSize;
        return true;
    }

    uint8_t* block = nullptr;
    uint32_t length = 0;
    if (!trader_->getInformation(applicationId, command.bytes(), command.length(), &block, &length))
        return false;
    std::unique_ptr<uint8_t[]> received(block);
    *infoLength = signedLength(length);
    *info = received.release();
    return true;
}

void POSAccessClient::disconnectIfUnused() noexcept {
    if (!applications_.empty()) return;
    attempt([this] {
        trader_->getForwarder()->CheckConnection();
        return true;
    });
}

void POSAccessClient::shutDown() noexcept {
    if (applications_.empty()) return;
    attempt([this] { return unregisterAll(); });
}

bool POSAccessClient::unregisterAll() {
    trader_->getForwarder()->ConnectToPOS(kConnectHint);
    for (auto next = applications_.begin(); next != applications_.end();) {
        const uint32_t applicationId = (next++)->first;
        unregisterApplication(applicationId);
    }
    return true;
}

}  // namespace dovrel

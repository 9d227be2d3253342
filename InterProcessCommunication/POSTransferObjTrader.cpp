#include "InterProcessCommunication/POSTransferObjTrader.h"

#include <limits>
#include <new>
#include <utility>

#include "InterProcessCommunication/POSCommands.h"
#include "InterProcessCommunication/POSTransferObjForwarder.h"
#include "client/exceptions/POSExceptionFactory.h"
#include "client/exceptions/StructuredDataExceptions.h"
#include "serialization/ByteArrayList.h"
#include "serialization/SerializationFailure.h"
#include "serialization/StructuredDataFormat.h"
#include "settings/MultiLanguageSupport.h"
#include "settings/TextKeys.h"

namespace dovrel {

namespace {

constexpr uint8_t kZeroIdentifier[kPOSIdentifierSize] = {};

class Request : public POSTransferObj {
  public:
    explicit Request(const POSCommand& command)
        : POSTransferObj(kTransferKindStandard, kMessageKindRequest, command) {}
};

CPPException* newNoValidInterface() {
    return new CPPException(MultiLanguageSupport::getText(kDllNoValidPosInterface).c_str());
}

CPPException* newExceptionForAnswer(uint32_t code, const char* text) {
    if (code == kErrorCodeGeneral) return new CPPException(text);
    if (code == kErrorCodeNoValidInterface) return newNoValidInterface();
    return newPOSExceptionForCode(code, text);
}

void writeClassList(POSTransferObj& request, const std::vector<CPPClassID>& classes) {
    for (const CPPClassID& classId : classes)
        requireIdentifierSize(classId);
    CPPExpandingByteArray block;
    writeByteArrayList(classes, block);
    request.writeByteArray(posField::kClassList, block);
}

void writeExecuter(POSTransferObj& request, const ProtectedExecuterID* executer) {
    if (executer == nullptr) {
        request.writeBytes(posField::kExecuter, nullptr, 0);
    } else {
        writeIdentifier(request, posField::kExecuter, *executer);
    }
}

void writeCommandData(POSTransferObj& request, const uint8_t* command, uint32_t commandLength,
                      const uint8_t* argument, uint32_t argumentLength) {
    const uint64_t length = uint64_t{commandLength} + argumentLength;
    if (length > std::numeric_limits<uint32_t>::max()) {
        throwSerializationFailure<StructuredWriteFailedException>(
            structuredData::site::kCommandData, MultiLanguageSupport::getText(kDllCommandTooLong).c_str());
    }
    CPPExpandingByteArray data;
    data.writeBytes(0, command, commandLength);
    data.writeBytes(commandLength, argument, argumentLength);
    // Without memory the array stays short.
    if (data.getSize() != length) throw std::bad_alloc();
    request.writeByteArray(posField::kCommandData, data);
}

}  // namespace

uint32_t POSTransferObjTrader::CheckTransferObjReply(std::unique_ptr<POSTransferObj>& reply) {
    std::unique_ptr<POSTransferObj> answer = std::move(reply);
    const uint32_t kind = answer->getMessageKind();
    if (kind != kMessageKindException) {
        reply = std::move(answer);
        return kind;
    }
    const std::string text = answer->readString(posField::kExceptionText);
    const uint32_t code = answer->readUInt32(posField::kExceptionCode);
    answer.reset();
    if (CPPException* const exception = newExceptionForAnswer(code, text.c_str())) throw exception;
    return code;
}

bool POSTransferObjTrader::registerApplication(const std::string& name,
                                               const std::vector<CPPClassID>& classes,
                                               const CPPByteArray& options, POSRegistration& registration) {
    forwarder_->ConnectToPOS(kConnectHint);
    if (!checkInterfaceVersion()) return false;

    Request request(posCommand::kRegisterApplication);
    writeName(request, posField::kApplicationName, name.c_str());
    request.writeByteArray(posField::kClientProcess, forwarder_->GetClientProcessID());
    writeClassList(request, classes);
    request.writeByteArray(posField::kOptions, options);

    const std::unique_ptr<POSTransferObj> reply = exchange(request);
    if (!reply) return false;
    const uint32_t applicationId = reply->readUInt32(posField::kSession);
    const uint32_t flags = reply->readUInt32(posField::kRegistrationFlags);
    registration.applicationId = applicationId;
    registration.checksClasses = (flags & kRegistrationChecksClasses) != 0;
    return true;
}

bool POSTransferObjTrader::checkInterfaceVersion() {
    Request request(posCommand::kQueryInterfaceVersion);
    const std::unique_ptr<POSTransferObj> reply = exchange(request);
    if (!reply) return false;
    if (reply->readUInt32(posField::kInterfaceVersion) != kPOSInterfaceVersion) throw newNoValidInterface();
    return true;
}

bool POSTransferObjTrader::unregisterApplication(uint32_t applicationId) {
    Request request(posCommand::kUnregisterApplication);
    request.writeUInt32(posField::kSession, applicationId);
    return exchange(request) != nullptr;
}

bool POSTransferObjTrader::instantiateObject(uint32_t applicationId, const CPPClassID& classId,
                                             uint32_t executer, CPPObjectID& objectId,
                                             POSServerMessage& message) {
    Request request(posCommand::kInstantiateObject);
    request.writeUInt32(posField::kSession, applicationId);
    writeIdentifier(request, posField::kClass, classId);
    request.writeBytes(posField::kCreationData, nullptr, 0);
    request.writeUInt32(posField::kExecuterWord, executer);

    const std::unique_ptr<POSTransferObj> reply = exchange(request);
    if (!reply) return false;
    POSServerMessage received = readServerMessage(*reply, posField::kServerMessage);
    readIdentifier(*reply, posField::kObject, objectId);
    message = std::move(received);
    return true;
}

bool POSTransferObjTrader::deleteObject(uint32_t applicationId, const CPPObjectID& objectId) {
    Request request(posCommand::kDeleteObject);
    request.writeUInt32(posField::kSession, applicationId);
    writeIdentifier(request, posField::kObject, objectId);
    return exchange(request) != nullptr;
}

bool POSTransferObjTrader::callMethod(uint32_t applicationId, const ProtectedExecuterID* executer,
                                      const CPPObjectID& objectId, const char* methodName,
                                      const uint8_t* parameters, uint32_t parameterLength, uint8_t** result,
                                      uint32_t* resultLength, POSServerMessage& message) {
    Request request(posCommand::kCallMethod);
    request.writeUInt32(posField::kSession, applicationId);
    writeIdentifier(request, posField::kObject, objectId);
    writeName(request, posField::kMethodName, methodName);
    request.writeBytes(posField::kArgument, parameters, parameterLength);
    writeExecuter(request, executer);

    const std::unique_ptr<POSTransferObj> reply = exchange(request);
    if (!reply) return false;
    uint32_t length = 0;
    std::unique_ptr<uint8_t[]> block = reply->readBlock(posField::kResult, length);
    message = readServerMessage(*reply, posField::kServerMessage);
    *result = block.release();
    *resultLength = length;
    return true;
}

bool POSTransferObjTrader::executeCommand(uint32_t applicationId, const uint8_t* command,
                                          uint32_t commandLength, const uint8_t* argument,
                                          uint32_t argumentLength, uint8_t** result, uint32_t* resultLength) {
    Request request(posCommand::kExecuteCommand);
    request.writeUInt32(posField::kSession, applicationId);
    request.writeBytes(posField::kCommandExecuter, kZeroIdentifier, sizeof kZeroIdentifier);
    writeCommandData(request, command, commandLength, argument, argumentLength);
    request.writeUInt32(posField::kCommandLength, commandLength);
    return exchangeForBlock(request, posField::kResult, result, resultLength);
}

bool POSTransferObjTrader::getInformation(uint32_t applicationId, const uint8_t* request,
                                          uint32_t requestLength, uint8_t** info, uint32_t* infoLength) {
    Request query(posCommand::kGetInformation);
    query.writeUInt32(posField::kSession, applicationId);
    query.writeBytes(posField::kInformationRequest, request, requestLength);
    return exchangeForBlock(query, posField::kInformation, info, infoLength);
}

bool POSTransferObjTrader::exchangeForBlock(POSTransferObj& request, uint32_t id, uint8_t** block,
                                            uint32_t* length) {
    const std::unique_ptr<POSTransferObj> reply = exchange(request);
    if (!reply) return false;
    *block = reply->readBlock(id, *length).release();
    return true;
}

// Null when the answer names an error that stands for no exception.
std::unique_ptr<POSTransferObj> POSTransferObjTrader::exchange(POSTransferObj& request) {
    std::unique_ptr<POSTransferObj> reply(forwarder_->ForwardTransferObj(request));
    CheckTransferObjReply(reply);
    return reply;
}

}  // namespace dovrel

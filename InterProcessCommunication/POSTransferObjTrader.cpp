#include "InterProcessCommunication/POSTransferObjTrader.h"

#include <limits>
#include <new>
#include <utility>

#include "InterProcessCommunication/POSCommands.h"
#include "InterProcessCommunication/POSTransferObjForwarder.h"
#include "InterProcessCommunication/TransferObjText.h"
#include "client/exceptions/POSExceptionFactory.h"
#include "client/exceptions/StructuredDataExceptions.h"
#include "platform/trace/FailureNotes.h"
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
    template <class... Fields>
    explicit Request(const POSCommand& command, const Fields&... fields)
        : POSTransferObj(kTransferKindStandard, kMessageKindRequest, command, fields...) {}
};

StructuredPart sessionField(uint32_t applicationId) {
    return StructuredPart::ofNumber(posField::kSession, applicationId);
}

CPPException* newNoValidInterface() {
    return new CPPException(MultiLanguageSupport::getText(kDllNoValidPosInterface).c_str());
}

CPPException* newExceptionForAnswer(uint32_t code, const char* text) {
    if (code == kErrorCodeGeneral) return new CPPException(text);
    if (code == kErrorCodeNoValidInterface) return newNoValidInterface();
    return newPOSExceptionForCode(code, text);
}

CPPExpandingByteArray classListBlock(const std::vector<CPPClassID>& classes) {
    for (const CPPClassID& classId : classes)
        requireIdentifierSize(classId);
    CPPExpandingByteArray block;
    writeByteArrayList(classes, block);
    return block;
}

StructuredPart executerField(const ProtectedExecuterID* executer) {
    return executer == nullptr ? StructuredPart::ofBytes(posField::kExecuter, nullptr, 0)
                               : identifierField(posField::kExecuter, *executer);
}

/// Appends the bytes. Throws std::bad_alloc at once if the array could not grow, because a later write would
/// fill the place of the missing bytes with zeros.
void append(CPPExpandingByteArray& data, const uint8_t* bytes, uint32_t length) {
    const uint32_t size = data.getSize();
    data.writeBytes(size, bytes, length);
    if (data.getSize() - size != length) throw std::bad_alloc();
}

CPPExpandingByteArray commandData(const uint8_t* command, uint32_t commandLength, const uint8_t* argument,
                                  uint32_t argumentLength) {
    const uint64_t length = uint64_t{commandLength} + argumentLength;
    if (length > std::numeric_limits<uint32_t>::max()) {
        throwSerializationFailure<StructuredWriteFailedException>(
            structuredData::site::kCommandData, MultiLanguageSupport::getText(kDllCommandTooLong).c_str());
    }
    CPPExpandingByteArray data;
    append(data, command, commandLength);
    append(data, argument, argumentLength);
    return data;
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
    FailureNotes::addServerError(code, text);
    if (CPPException* const exception = newExceptionForAnswer(code, text.c_str())) throw exception;
    return code;
}

bool POSTransferObjTrader::registerApplication(const std::string& name,
                                               const std::vector<CPPClassID>& classes,
                                               const CPPByteArray& options, POSRegistration& registration) {
    forwarder_->ConnectToPOS(kConnectHint);
    if (!checkInterfaceVersion()) return false;

    const CPPByteArray clientProcess = forwarder_->GetClientProcessID();
    const CPPExpandingByteArray classList = classListBlock(classes);
    Request request(posCommand::kRegisterApplication, nameField(posField::kApplicationName, name.c_str()),
                    StructuredPart::ofArray(posField::kClientProcess, clientProcess),
                    StructuredPart::ofArray(posField::kClassList, classList),
                    StructuredPart::ofArray(posField::kOptions, options));

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
    const uint32_t version = reply->readUInt32(posField::kInterfaceVersion);
    if (version == kPOSInterfaceVersion) return true;
    FailureNotes::addFailedStep(TraceArea::kExchange, [version] {
        return "interface version: the server has " + std::to_string(version) + ", the library needs " +
               std::to_string(kPOSInterfaceVersion);
    });
    throw newNoValidInterface();
}

bool POSTransferObjTrader::unregisterApplication(uint32_t applicationId) {
    Request request(posCommand::kUnregisterApplication, sessionField(applicationId));
    return exchange(request) != nullptr;
}

bool POSTransferObjTrader::instantiateObject(uint32_t applicationId, const CPPClassID& classId,
                                             uint32_t executer, CPPObjectID& objectId,
                                             POSServerMessage& message) {
    Request request(posCommand::kInstantiateObject, sessionField(applicationId),
                    identifierField(posField::kClass, classId),
                    StructuredPart::ofBytes(posField::kCreationData, nullptr, 0),
                    StructuredPart::ofNumber(posField::kExecuterWord, executer));

    const std::unique_ptr<POSTransferObj> reply = exchange(request);
    if (!reply) return false;
    POSServerMessage received = readServerMessage(*reply, posField::kServerMessage);
    readIdentifier(*reply, posField::kObject, objectId);
    message = std::move(received);
    return true;
}

bool POSTransferObjTrader::deleteObject(uint32_t applicationId, const CPPObjectID& objectId) {
    Request request(posCommand::kDeleteObject, sessionField(applicationId),
                    identifierField(posField::kObject, objectId));
    return exchange(request) != nullptr;
}

bool POSTransferObjTrader::callMethod(uint32_t applicationId, const ProtectedExecuterID* executer,
                                      const CPPObjectID& objectId, const char* methodName,
                                      const uint8_t* parameters, uint32_t parameterLength, uint8_t** result,
                                      uint32_t* resultLength, POSServerMessage& message) {
    Request request(
        posCommand::kCallMethod, sessionField(applicationId), identifierField(posField::kObject, objectId),
        nameField(posField::kMethodName, methodName),
        StructuredPart::ofBytes(posField::kArgument, parameters, parameterLength), executerField(executer));

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
    const CPPExpandingByteArray data = commandData(command, commandLength, argument, argumentLength);
    Request request(
        posCommand::kExecuteCommand, sessionField(applicationId),
        StructuredPart::ofBytes(posField::kCommandExecuter, kZeroIdentifier, sizeof kZeroIdentifier),
        StructuredPart::ofArray(posField::kCommandData, data),
        StructuredPart::ofNumber(posField::kCommandLength, commandLength));
    return exchangeForBlock(request, posField::kResult, result, resultLength);
}

bool POSTransferObjTrader::getInformation(uint32_t applicationId, const uint8_t* request,
                                          uint32_t requestLength, uint8_t** info, uint32_t* infoLength) {
    Request query(posCommand::kGetInformation, sessionField(applicationId),
                  StructuredPart::ofBytes(posField::kInformationRequest, request, requestLength));
    return exchangeForBlock(query, posField::kInformation, info, infoLength);
}

bool POSTransferObjTrader::exchangeForBlock(POSTransferObj& request, uint32_t id, uint8_t** block,
                                            uint32_t* length) {
    const std::unique_ptr<POSTransferObj> reply = exchange(request);
    if (!reply) return false;
    *block = reply->readBlock(id, *length).release();
    return true;
}

// Returns null if the reply has an error code for which no exception is thrown.
std::unique_ptr<POSTransferObj> POSTransferObjTrader::exchange(POSTransferObj& request) {
    const auto noteRequest = [&request] {
        FailureNotes::addRequest([&request] { return requestSummary(request.bytes()); });
    };
    try {
        std::unique_ptr<POSTransferObj> reply(forwarder_->ForwardTransferObj(request));
        CheckTransferObjReply(reply);
        if (!reply) noteRequest();
        return reply;
    } catch (const CPPException*) {
        noteRequest();
        throw;
    }
}

}  // namespace dovrel

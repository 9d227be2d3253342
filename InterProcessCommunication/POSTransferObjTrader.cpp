#include "InterProcessCommunication/POSTransferObjTrader.h"

#include <array>
#include <cstddef>
#include <limits>
#include <utility>

#include "InterProcessCommunication/POSCommands.h"
#include "InterProcessCommunication/POSFieldForms.h"
#include "InterProcessCommunication/POSTransferObj.h"
#include "InterProcessCommunication/POSTransferObjForwarder.h"
#include "InterProcessCommunication/TransferObjText.h"
#include "client/exceptions/POSException.h"
#include "client/exceptions/StructuredDataExceptions.h"
#include "platform/trace/FailureNotes.h"
#include "serialization/ByteArrayList.h"
#include "serialization/StructuredDataFormat.h"
#include "settings/MultiLanguageSupport.h"
#include "settings/TextKeys.h"

namespace dovrel {

namespace {

constexpr uint8_t kZeroIdentifier[kPOSIdentifierSize] = {};

/// A request that refers to its fields until it is sent. The bytes of the fields must outlive it.
template <size_t fieldCount>
class Request : public POSTransferObj {
  public:
    template <class... Fields>
    explicit Request(const POSCommand& command, const Fields&... fields)
        : POSTransferObj(ByteBlock()),
          fields_{StructuredPart::ofNumber(posField::kTransferKind, kTransferKindStandard),
                  StructuredPart::ofNumber(posField::kMessageKind, kMessageKindRequest),
                  StructuredPart::ofNumber(posField::kCommand, command), fields...} {
        deferFields(fields_.data(), fields_.size());
    }

  private:
    const std::array<StructuredPart, fieldCount> fields_;
};

template <class... Fields>
Request(const POSCommand& command, const Fields&... fields) -> Request<3 + sizeof...(Fields)>;

StructuredPart makeSessionField(uint32_t applicationId) {
    return StructuredPart::ofNumber(posField::kSession, applicationId);
}

CPPException* makeNoValidInterfaceException() {
    return new CPPException(MultiLanguageSupport::getText(kDllNoValidPosInterface).c_str());
}

CPPException* makeExceptionForReply(uint32_t code, const char* text) {
    if (code == kErrorCodeGeneral) return new CPPException(text);
    if (code == kErrorCodeNoValidInterface) return makeNoValidInterfaceException();
    return newPOSExceptionForCode(code, text);
}

CPPExpandingByteArray makeClassListBlock(const std::vector<CPPClassID>& classes) {
    for (const CPPClassID& classId : classes)
        requireIdentifierSize(classId);
    CPPExpandingByteArray block;
    writeByteArrayList(classes, block);
    return block;
}

StructuredPart makeExecuterField(const std::optional<ProtectedExecuterID>& executer) {
    return executer ? makeIdentifierField(posField::kExecuter, *executer)
                    : StructuredPart::ofBytes(posField::kExecuter, nullptr, 0);
}

/// Appends the bytes. Throws std::bad_alloc at once if the array could not grow, because a later write would
/// fill the place of the missing bytes with zeros.
void append(CPPExpandingByteArray& data, const ByteView& bytes) {
    const uint32_t size = data.getSize();
    data.writeBytes(size, bytes.data, bytes.length);
    data.requireSize(size + bytes.length);
}

CPPExpandingByteArray joinCommandData(const Command& command) {
    const uint64_t length = uint64_t{command.bytes.length} + command.argument.length;
    if (length > std::numeric_limits<uint32_t>::max()) {
        throwSerializationFailure<StructuredWriteFailedException>(
            structuredData::site::kCommandData, MultiLanguageSupport::getText(kDllCommandTooLong).c_str());
    }
    CPPExpandingByteArray data;
    append(data, command.bytes);
    append(data, command.argument);
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
    if (CPPException* const exception = makeExceptionForReply(code, text.c_str())) throw exception;
    return code;
}

POSResult<POSRegistration> POSTransferObjTrader::registerApplication(const std::string& name,
                                                                     const std::vector<CPPClassID>& classes,
                                                                     const CPPByteArray& options) {
    forwarder_->ConnectToPOS(kConnectHint);
    if (checkInterfaceVersion() != POSOutcome::kDone) return {};

    const CPPByteArray clientProcess = forwarder_->GetClientProcessID();
    const CPPExpandingByteArray classList = makeClassListBlock(classes);
    Request request(posCommand::kRegisterApplication, makeNameField(posField::kApplicationName, name.c_str()),
                    StructuredPart::ofArray(posField::kClientProcess, clientProcess),
                    StructuredPart::ofArray(posField::kClassList, classList),
                    StructuredPart::ofArray(posField::kOptions, options));

    const std::unique_ptr<POSTransferObj> reply = sendAndCheck(request);
    if (!reply) return {};
    const uint32_t applicationId = reply->readUInt32(posField::kSession);
    const uint32_t flags = reply->readUInt32(posField::kRegistrationFlags);
    return {POSOutcome::kDone, {applicationId, (flags & kRegistrationChecksClasses) != 0}};
}

POSOutcome POSTransferObjTrader::checkInterfaceVersion() {
    Request request(posCommand::kQueryInterfaceVersion);
    const std::unique_ptr<POSTransferObj> reply = sendAndCheck(request);
    if (!reply) return POSOutcome::kUnlistedError;
    const uint32_t version = reply->readUInt32(posField::kInterfaceVersion);
    if (version == kPOSInterfaceVersion) return POSOutcome::kDone;
    FailureNotes::addFailedStep(TraceArea::kExchange, [version] {
        return "interface version: the server has " + std::to_string(version) + ", the library needs " +
               std::to_string(kPOSInterfaceVersion);
    });
    throw makeNoValidInterfaceException();
}

POSOutcome POSTransferObjTrader::unregisterApplication(uint32_t applicationId) {
    Request request(posCommand::kUnregisterApplication, makeSessionField(applicationId));
    return sendForOutcome(request);
}

POSResult<POSInstance> POSTransferObjTrader::instantiateObject(uint32_t applicationId,
                                                               const CPPClassID& classId, uint32_t executer) {
    Request request(posCommand::kInstantiateObject, makeSessionField(applicationId),
                    makeIdentifierField(posField::kClass, classId),
                    StructuredPart::ofBytes(posField::kCreationData, nullptr, 0),
                    StructuredPart::ofNumber(posField::kExecuterWord, executer));

    const std::unique_ptr<POSTransferObj> reply = sendAndCheck(request);
    POSResult<POSInstance> result;
    if (!reply) return result;
    result.value.message = readServerMessage(*reply, posField::kServerMessage);
    readIdentifier(*reply, posField::kObject, result.value.object);
    result.outcome = POSOutcome::kDone;
    return result;
}

POSOutcome POSTransferObjTrader::deleteObject(uint32_t applicationId, const CPPObjectID& objectId) {
    Request request(posCommand::kDeleteObject, makeSessionField(applicationId),
                    makeIdentifierField(posField::kObject, objectId));
    return sendForOutcome(request);
}

POSResult<POSMethodReply> POSTransferObjTrader::callMethod(uint32_t applicationId, const MethodCall& call) {
    Request request(
        posCommand::kCallMethod, makeSessionField(applicationId),
        makeIdentifierField(posField::kObject, call.object), makeNameField(posField::kMethodName, call.name),
        StructuredPart::ofBytes(posField::kArgument, call.parameters.data, call.parameters.length),
        makeExecuterField(call.executer));

    const std::unique_ptr<POSTransferObj> reply = sendAndCheck(request);
    POSResult<POSMethodReply> result;
    if (!reply) return result;
    result.value.message = readServerMessage(*reply, posField::kServerMessage);
    // The last read, because it takes the reply's bytes.
    result.value.result = reply->takeBlock(posField::kResult);
    result.outcome = POSOutcome::kDone;
    return result;
}

POSResult<ByteBlock> POSTransferObjTrader::executeCommand(uint32_t applicationId, const Command& command) {
    const CPPExpandingByteArray data = joinCommandData(command);
    Request request(
        posCommand::kExecuteCommand, makeSessionField(applicationId),
        StructuredPart::ofBytes(posField::kCommandExecuter, kZeroIdentifier, sizeof kZeroIdentifier),
        StructuredPart::ofArray(posField::kCommandData, data),
        StructuredPart::ofNumber(posField::kCommandLength, command.bytes.length));
    return sendForBlock(request, posField::kResult);
}

POSResult<ByteBlock> POSTransferObjTrader::getInformation(uint32_t applicationId, const ByteView& request) {
    Request query(posCommand::kGetInformation, makeSessionField(applicationId),
                  StructuredPart::ofBytes(posField::kInformationRequest, request.data, request.length));
    return sendForBlock(query, posField::kInformation);
}

POSOutcome POSTransferObjTrader::sendForOutcome(POSTransferObj& request) {
    return sendAndCheck(request) ? POSOutcome::kDone : POSOutcome::kUnlistedError;
}

POSResult<ByteBlock> POSTransferObjTrader::sendForBlock(POSTransferObj& request, uint32_t resultField) {
    const std::unique_ptr<POSTransferObj> reply = sendAndCheck(request);
    if (!reply) return {};
    return {POSOutcome::kDone, reply->takeBlock(resultField)};
}

// Returns null if the reply has an error code for which no exception is thrown.
std::unique_ptr<POSTransferObj> POSTransferObjTrader::sendAndCheck(POSTransferObj& request) {
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

#include "server/RequestHandler.h"

#include <new>
#include <utility>
#include <vector>

#include "client/exceptions/CPPException.h"
#include "serialization/ByteArrayList.h"
#include "server/ClassCode.h"
#include "server/Commands.h"
#include "server/PartCount.h"

namespace merrowd {

using dovrel::CPPException;
using dovrel::StructuredPart;
namespace posCommand = dovrel::posCommand;
namespace posField = dovrel::posField;

namespace {

std::vector<Identifier> readClassList(const CPPByteArray& block) {
    // One part has the number of elements.
    if (hasMorePartsThan(kMostClasses + 1, block)) {
        throw Refusal{refusalCode::kPOSParameterFormat,
                      "field 130 (class list) has more than " + std::to_string(kMostClasses) + " elements"};
    }
    std::vector<CPPByteArray> list;
    try {
        dovrel::readByteArrayList(block, list);
    } catch (CPPException* caught) {
        std::unique_ptr<CPPException> failure(caught);
        throw Refusal{refusalCode::kPOSParameterFormat, "field 130 (class list) is no list of byte arrays"};
    }
    std::vector<Identifier> classes;
    for (const CPPByteArray& element : list) {
        Identifier identifier{};
        if (element.getSize() != identifier.size()) {
            throw Refusal{refusalCode::kPOSParameterFormat,
                          "field 130 (class list) has an element that is not 16 bytes"};
        }
        element.readBytes(0, identifier.data(), element.getSize());
        classes.push_back(identifier);
    }
    return classes;
}

// From this size on, a reply takes over the memory of its data.
constexpr uint32_t kLargeData = 4096;

// Returns the flags and the text, or nothing if there is no message.
CPPByteArray encodeMessage(const UserMessage& message) {
    if (message.flags == 0) return CPPByteArray();
    return toBytes(bytesToText(numberToBytes(message.flags)) + message.text);
}

template <class... Fields>
std::unique_ptr<POSTransferObj> newReply(uint32_t command, const Fields&... fields) {
    return std::make_unique<POSTransferObj>(dovrel::kTransferKindStandard, kMessageKindReply, command,
                                            fields...);
}

// Returns a reply with one field of data.
std::unique_ptr<POSTransferObj> newDataReply(uint32_t command, uint32_t field, CPPByteArray data) {
    if (data.getSize() < kLargeData) return newReply(command, StructuredPart::ofArray(field, data));
    auto reply = newReply(command);
    reply->writeByteArray(field, std::move(data));
    return reply;
}

}  // namespace

std::unique_ptr<POSTransferObj> RequestHandler::handle(CPPByteArray request, pid_t sender) {
    uint32_t command = 0;
    try {
        return performRequest(request, sender, command);
    } catch (const EscapedException& escaped) {
        note_(escaped.text);
        return makeExceptionReply(command, escaped);
    } catch (const Refusal& refusal) {
        return makeExceptionReply(command, refusal);
    }
}

RequestHandler::Reply RequestHandler::performRequest(CPPByteArray& request, pid_t sender, uint32_t& command) {
    try {
        RequestFields fields(request);
        command = fields.command();
        return perform(fields, sender);
    } catch (const Refusal&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {
        throwEscapedException(refusalCode::kPOSException, "the server");
    }
}

std::unique_ptr<POSTransferObj> RequestHandler::makeExceptionReply(uint32_t command, const Refusal& refusal) {
    auto reply = std::make_unique<POSTransferObj>(dovrel::kTransferKindStandard,
                                                  dovrel::kMessageKindException, command);
    reply->writeString(posField::kExceptionText, refusal.text);
    reply->writeUInt32(posField::kExceptionCode, refusal.code);
    return reply;
}

RequestHandler::Reply RequestHandler::perform(RequestFields& request, pid_t sender) {
    switch (request.command()) {
        case posCommand::kRegisterApplication.code:
            return registerApplication(request, sender);
        case posCommand::kUnregisterApplication.code:
            return unregisterApplication(request);
        case posCommand::kInstantiateObject.code:
            return instantiateObject(request);
        case posCommand::kDeleteObject.code:
            return deleteObject(request);
        case posCommand::kCallMethod.code:
            return callMethod(request);
        case posCommand::kExecuteCommand.code:
            return executeCommand(request);
        case posCommand::kGetInformation.code:
            return getInformation(request);
        case posCommand::kQueryInterfaceVersion.code:
            return queryInterfaceVersion();
        default:
            throw Refusal{dovrel::kErrorCodeNoValidInterface, "this server does not know the command"};
    }
}

RequestHandler::Reply RequestHandler::registerApplication(const RequestFields& request, pid_t sender) {
    Application application;
    application.name = request.name(posField::kApplicationName);
    application.classes = readClassList(request.data(posField::kClassList));
    application.process = sender;
    // Hosts that were killed never unregister.
    state_.applications.removeGone();
    const uint32_t id = state_.applications.add(std::move(application));

    const uint32_t flags = state_.settings.checkClasses ? dovrel::kRegistrationChecksClasses : 0;
    return newReply(posCommand::kRegisterApplication, StructuredPart::ofNumber(posField::kSession, id),
                    StructuredPart::ofNumber(posField::kRegistrationFlags, flags));
}

RequestHandler::Reply RequestHandler::unregisterApplication(const RequestFields& request) {
    state_.applications.remove(request.number(posField::kSession));
    return newReply(posCommand::kUnregisterApplication);
}

RequestHandler::Reply RequestHandler::instantiateObject(const RequestFields& request) {
    const uint32_t applicationId = request.number(posField::kSession);
    const Caller caller = makeCaller(applicationId);
    ObjectRecord record;
    record.ofClass = state_.classes.find(request.identifier(posField::kClass));
    if (record.ofClass == nullptr) {
        throw Refusal{refusalCode::kPOSClassNotFound, "the server has no such class"};
    }
    UserMessage message;
    record.object = runClassCode(
        refusalCode::kPOSObjectInstantiation,
        [&] { return "the creation of an object of the class " + record.ofClass->name(); },
        [&] { return record.ofClass->instantiate(caller, message); });
    const Identifier id = state_.applications.addObject(applicationId, std::move(record));

    const CPPByteArray messageBytes = encodeMessage(message);
    return newReply(posCommand::kInstantiateObject,
                    StructuredPart::ofBytes(posField::kObject, id.data(), static_cast<uint32_t>(id.size())),
                    StructuredPart::ofArray(posField::kServerMessage, messageBytes));
}

Caller RequestHandler::makeCaller(uint32_t applicationId) const {
    const Application& application = state_.applications.find(applicationId);
    return {applicationId, application.name, application.process};
}

RequestHandler::Reply RequestHandler::deleteObject(const RequestFields& request) {
    state_.applications.removeObject(request.number(posField::kSession),
                                     request.identifier(posField::kObject));
    return newReply(posCommand::kDeleteObject);
}

RequestHandler::Reply RequestHandler::callMethod(RequestFields& request) {
    const uint32_t applicationId = request.number(posField::kSession);
    const ObjectRecord& record =
        state_.applications.findObject(applicationId, request.identifier(posField::kObject));
    const std::string method = request.name(posField::kMethodName);
    if (!record.ofClass->hasMethod(method)) {
        throw Refusal{refusalCode::kPOSMethodNotFound,
                      "the class " + record.ofClass->name() + " has no method \"" + method + "\""};
    }
    MethodResult result = runClassCode(
        refusalCode::kPOSMethodExecution,
        [&] { return "the method \"" + method + "\" of the class " + record.ofClass->name(); },
        [&] {
            return record.object->call(method, request.takeData(posField::kArgument),
                                       makeCaller(applicationId));
        });

    const CPPByteArray messageBytes = encodeMessage(result.message);
    if (result.data.getSize() < kLargeData) {
        return newReply(posCommand::kCallMethod, StructuredPart::ofArray(posField::kResult, result.data),
                        StructuredPart::ofArray(posField::kServerMessage, messageBytes));
    }
    Reply reply = newDataReply(posCommand::kCallMethod, posField::kResult, std::move(result.data));
    reply->writeByteArray(posField::kServerMessage, messageBytes);
    return reply;
}

RequestHandler::Reply RequestHandler::executeCommand(RequestFields& request) {
    const uint32_t session = request.number(posField::kSession);
    const uint32_t length = request.number(posField::kCommandLength);
    CPPByteArray both = request.takeData(posField::kCommandData);
    if (length > both.getSize()) {
        throw Refusal{refusalCode::kPOSParameterFormat, "the command is longer than the data that hold it"};
    }
    CPPByteArray command;
    command.setFromPart(both, 0, length);
    both.keepPart(length, both.getSize() - length);
    return newDataReply(posCommand::kExecuteCommand, posField::kResult,
                        runCommand(state_, session, bytesToText(command), std::move(both)));
}

RequestHandler::Reply RequestHandler::getInformation(RequestFields& request) {
    return newDataReply(posCommand::kGetInformation, posField::kInformation,
                        readInformation(state_, request.takeData(posField::kInformationRequest)));
}

RequestHandler::Reply RequestHandler::queryInterfaceVersion() {
    return newReply(posCommand::kQueryInterfaceVersion,
                    StructuredPart::ofNumber(posField::kInterfaceVersion, state_.settings.interfaceVersion));
}

}  // namespace merrowd

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

// Writes the flags and the text, or an empty field if there is no message.
void writeMessage(POSTransferObj& reply, const UserMessage& message) {
    CPPByteArray field;
    if (message.flags != 0) field = toBytes(bytesToText(numberToBytes(message.flags)) + message.text);
    reply.writeByteArray(posField::kServerMessage, field);
}

std::unique_ptr<POSTransferObj> newReply(uint32_t command) {
    return std::make_unique<POSTransferObj>(dovrel::kTransferKindStandard, kMessageKindReply, command);
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

std::unique_ptr<POSTransferObj> RequestHandler::performRequest(CPPByteArray& request, pid_t sender,
                                                               uint32_t& command) {
    try {
        RequestFields fields(request);
        command = fields.command();
        std::unique_ptr<POSTransferObj> reply = newReply(command);
        perform(fields, sender, *reply);
        return reply;
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

void RequestHandler::perform(RequestFields& request, pid_t sender, POSTransferObj& reply) {
    switch (request.command()) {
        case posCommand::kRegisterApplication.code:
            return registerApplication(request, sender, reply);
        case posCommand::kUnregisterApplication.code:
            return unregisterApplication(request);
        case posCommand::kInstantiateObject.code:
            return instantiateObject(request, reply);
        case posCommand::kDeleteObject.code:
            return deleteObject(request);
        case posCommand::kCallMethod.code:
            return callMethod(request, reply);
        case posCommand::kExecuteCommand.code:
            return executeCommand(request, reply);
        case posCommand::kGetInformation.code:
            return getInformation(request, reply);
        case posCommand::kQueryInterfaceVersion.code:
            return queryInterfaceVersion(reply);
        default:
            throw Refusal{dovrel::kErrorCodeNoValidInterface, "this server does not know the command"};
    }
}

void RequestHandler::registerApplication(const RequestFields& request, pid_t sender, POSTransferObj& reply) {
    Application application;
    application.name = request.name(posField::kApplicationName);
    application.classes = readClassList(request.data(posField::kClassList));
    application.process = sender;
    // Hosts that were killed never unregister.
    state_.applications.removeGone();
    const uint32_t id = state_.applications.add(std::move(application));

    const uint32_t flags = state_.settings.checkClasses ? dovrel::kRegistrationChecksClasses : 0;
    reply.writeUInt32(posField::kSession, id);
    reply.writeByteArray(posField::kRegistrationFlags, numberToBytes(flags));
}

void RequestHandler::unregisterApplication(const RequestFields& request) {
    state_.applications.remove(request.number(posField::kSession));
}

void RequestHandler::instantiateObject(const RequestFields& request, POSTransferObj& reply) {
    const uint32_t applicationId = request.number(posField::kSession);
    state_.applications.find(applicationId);
    ObjectRecord record;
    record.ofClass = state_.classes.find(request.identifier(posField::kClass));
    if (record.ofClass == nullptr) {
        throw Refusal{refusalCode::kPOSClassNotFound, "the server has no such class"};
    }
    UserMessage message;
    record.object = runClassCode(
        refusalCode::kPOSObjectInstantiation,
        [&] { return "the creation of an object of the class " + record.ofClass->name(); },
        [&] { return record.ofClass->instantiate(message); });
    const Identifier id = state_.applications.addObject(applicationId, std::move(record));

    reply.writeBytes(posField::kObject, id.data(), static_cast<uint32_t>(id.size()));
    writeMessage(reply, message);
}

void RequestHandler::deleteObject(const RequestFields& request) {
    state_.applications.removeObject(request.number(posField::kSession),
                                     request.identifier(posField::kObject));
}

void RequestHandler::callMethod(RequestFields& request, POSTransferObj& reply) {
    const ObjectRecord& record = state_.applications.findObject(request.number(posField::kSession),
                                                                request.identifier(posField::kObject));
    const std::string method = request.name(posField::kMethodName);
    if (!record.ofClass->hasMethod(method)) {
        throw Refusal{refusalCode::kPOSMethodNotFound,
                      "the class " + record.ofClass->name() + " has no method \"" + method + "\""};
    }
    MethodResult result = runClassCode(
        refusalCode::kPOSMethodExecution,
        [&] { return "the method \"" + method + "\" of the class " + record.ofClass->name(); },
        [&] { return record.object->call(method, request.takeData(posField::kArgument)); });

    reply.writeByteArray(posField::kResult, std::move(result.data));
    writeMessage(reply, result.message);
}

void RequestHandler::executeCommand(RequestFields& request, POSTransferObj& reply) {
    const uint32_t session = request.number(posField::kSession);
    const uint32_t length = request.number(posField::kCommandLength);
    CPPByteArray both = request.takeData(posField::kCommandData);
    if (length > both.getSize()) {
        throw Refusal{refusalCode::kPOSParameterFormat, "the command is longer than the data that hold it"};
    }
    CPPByteArray command;
    command.setFromPart(both, 0, length);
    both.keepPart(length, both.getSize() - length);
    reply.writeByteArray(posField::kResult,
                         runCommand(state_, session, bytesToText(command), std::move(both)));
}

void RequestHandler::getInformation(RequestFields& request, POSTransferObj& reply) {
    reply.writeByteArray(posField::kInformation,
                         readInformation(state_, request.takeData(posField::kInformationRequest)));
}

void RequestHandler::queryInterfaceVersion(POSTransferObj& reply) {
    reply.writeUInt32(posField::kInterfaceVersion, state_.settings.interfaceVersion);
}

}  // namespace merrowd

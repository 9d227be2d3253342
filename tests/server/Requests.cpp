#include "tests/server/Requests.h"

#include <gtest/gtest.h>

#include "serialization/ByteArrayList.h"

namespace merrowd::test {

namespace posCommand = dovrel::posCommand;
namespace posField = dovrel::posField;

namespace {

const std::string kNoIdentifier(16, '\0');

}  // namespace

Request::Request(uint32_t command)
    : object_(std::make_unique<POSTransferObj>(dovrel::kTransferKindStandard, dovrel::kMessageKindRequest,
                                               command)) {}

Request& Request::number(uint32_t field, uint32_t value) {
    object_->writeUInt32(field, value);
    return *this;
}

Request& Request::data(uint32_t field, const std::string& bytes) {
    object_->writeBytes(field, bytes.data(), static_cast<uint32_t>(bytes.size()));
    return *this;
}

std::string padded(const std::string& name) {
    std::string identifier = name;
    identifier.resize(16, '\0');
    return identifier;
}

std::string arrayList(const std::vector<std::string>& elements) {
    std::vector<CPPByteArray> list;
    for (const std::string& element : elements)
        list.push_back(toBytes(element));
    dovrel::CPPExpandingByteArray block;
    dovrel::writeByteArrayList(list, block);
    return bytesToText(block);
}

Request registerRequest(const std::string& name, const std::vector<std::string>& classes) {
    std::vector<std::string> identifiers;
    for (const std::string& className : classes)
        identifiers.push_back(padded(className));
    Request request(posCommand::kRegisterApplication);
    request.data(posField::kApplicationName, name + '\0').data(posField::kClientProcess, "8 bytes.");
    request.data(posField::kClassList, arrayList(identifiers)).data(posField::kOptions, "");
    return request;
}

Request unregisterRequest(uint32_t session) {
    Request request(posCommand::kUnregisterApplication);
    request.number(posField::kSession, session);
    return request;
}

Request instantiateRequest(uint32_t session, const std::string& className) {
    Request request(posCommand::kInstantiateObject);
    request.number(posField::kSession, session).data(posField::kClass, padded(className));
    request.data(posField::kCreationData, "").number(posField::kExecuterWord, dovrel::kNoExecuter);
    return request;
}

Request deleteRequest(uint32_t session, const std::string& object) {
    Request request(posCommand::kDeleteObject);
    request.number(posField::kSession, session).data(posField::kObject, object);
    return request;
}

Request callRequest(uint32_t session, const std::string& object, const std::string& method,
                    const std::string& argument) {
    Request request(posCommand::kCallMethod);
    request.number(posField::kSession, session).data(posField::kObject, object);
    request.data(posField::kMethodName, method + '\0').data(posField::kArgument, argument);
    request.data(posField::kExecuter, "");
    return request;
}

Request commandRequest(uint32_t session, const std::string& command, const std::string& argument) {
    Request request(posCommand::kExecuteCommand);
    request.number(posField::kSession, session).data(posField::kCommandExecuter, kNoIdentifier);
    request.data(posField::kCommandData, command + argument);
    request.number(posField::kCommandLength, static_cast<uint32_t>(command.size()));
    return request;
}

Request informationRequest(uint32_t session, const std::string& bytes) {
    Request request(posCommand::kGetInformation);
    request.number(posField::kSession, session).data(posField::kInformationRequest, bytes);
    return request;
}

Request versionRequest() {
    return Request(posCommand::kQueryInterfaceVersion);
}

std::vector<Request> oneOfEachRequest() {
    std::vector<Request> requests;
    requests.push_back(registerRequest("Demo", {"Echo", "Counter"}));
    requests.push_back(unregisterRequest(1));
    requests.push_back(instantiateRequest(1, "Echo"));
    requests.push_back(deleteRequest(1, kNoIdentifier));
    requests.push_back(callRequest(1, kNoIdentifier, "echo", "hello"));
    requests.push_back(commandRequest(1, "ping", "abc"));
    requests.push_back(informationRequest(1, std::string("\x01\x00", 2)));
    requests.push_back(versionRequest());
    return requests;
}

Reply::Reply(const CPPByteArray& bytes) : object_(std::make_unique<POSTransferObj>()) {
    object_->copyBytesFrom(bytes);
}

uint32_t Reply::code() const {
    return isException() ? object_->readUInt32(posField::kExceptionCode) : ~uint32_t{0};
}

uint32_t TestServer::registerApplication(const std::string& name) {
    const Reply reply = send(registerRequest(name));
    EXPECT_FALSE(reply.isException());
    return reply.number(posField::kSession);
}

std::string TestServer::instantiate(uint32_t session, const std::string& className) {
    const Reply reply = send(instantiateRequest(session, className));
    EXPECT_FALSE(reply.isException());
    return reply.data(posField::kObject);
}

TestObject::TestObject(const std::string& className)
    : class_(ClassRegistry().find(ServerClass::identifierFromName(className))) {
    UserMessage message;
    object_ = class_->instantiate(Caller(), message);
}

std::string TestObject::call(const std::string& method, const std::string& argument) {
    return bytesToText(object_->call(method, toBytes(argument), Caller()).data);
}

uint32_t TestObject::callRefused(const std::string& method, const std::string& argument) {
    try {
        call(method, argument);
    } catch (const Refusal& refusal) {
        EXPECT_NE(refusal.text, "");
        return refusal.code;
    }
    ADD_FAILURE() << "nothing was refused";
    return ~uint32_t{0};
}

std::string littleEndian(uint32_t number) {
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8)
        bytes += static_cast<char>(number >> shift & 0xFF);
    return bytes;
}

}  // namespace merrowd::test

// Builds requests as hosts send them, parses replies, and has a server in the
// test's process that replies to them.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "InterProcessCommunication/POSTransferObj.h"
#include "server/RequestHandler.h"

namespace merrowd::test {

/// A request, written field by field.
class Request {
  public:
    explicit Request(uint32_t command);

    Request& number(uint32_t field, uint32_t value);
    Request& data(uint32_t field, const std::string& bytes);
    const CPPByteArray& bytes() const { return object_->bytes(); }
    const POSTransferObj& object() const { return *object_; }

  private:
    std::unique_ptr<POSTransferObj> object_;
};

/// Returns 16 bytes: the name, then zero bytes.
std::string padded(const std::string& name);

/// Returns a byte array list of these elements.
std::string arrayList(const std::vector<std::string>& elements);

// Complete requests.
Request registerRequest(const std::string& name, const std::vector<std::string>& classes = {});
Request unregisterRequest(uint32_t session);
Request instantiateRequest(uint32_t session, const std::string& className);
Request deleteRequest(uint32_t session, const std::string& object);
Request callRequest(uint32_t session, const std::string& object, const std::string& method,
                    const std::string& argument = "");
Request commandRequest(uint32_t session, const std::string& command, const std::string& argument = "");
Request informationRequest(uint32_t session, const std::string& request);
Request versionRequest();

/// Returns one valid request per command. Their applications and objects need not exist.
std::vector<Request> oneOfEachRequest();

/// The bytes of a reply.
class Reply {
  public:
    explicit Reply(const CPPByteArray& bytes);

    const CPPByteArray& bytes() const { return object_->bytes(); }
    bool isException() const { return object_->getMessageKind() == dovrel::kMessageKindException; }
    /// Returns the code of an exception; ~0 for a normal reply.
    uint32_t code() const;
    std::string text() const { return object_->readString(dovrel::posField::kExceptionText); }

    bool has(uint32_t field) const { return object_->hasField(field); }
    uint32_t number(uint32_t field) const { return object_->readUInt32(field); }
    std::string data(uint32_t field) const { return object_->readString(field); }
    uint32_t messageKind() const { return object_->getMessageKind(); }
    uint32_t command() const { return object_->getCommand(); }

  private:
    std::unique_ptr<POSTransferObj> object_;
};

/// A server without a process of its own. The identifier of its first application is 65537.
class TestServer {
  public:
    static constexpr uint32_t kFirstSession = 65537;

    Reply send(const Request& request) { return send(request.bytes()); }
    Reply send(const CPPByteArray& bytes) { return Reply(handler_.handle(bytes, 0)->bytes()); }

    /// Both functions fail the test if the server refuses the request.
    uint32_t registerApplication(const std::string& name = "Demo");
    std::string instantiate(uint32_t session, const std::string& className);

    ServerState& state() { return state_; }

  private:
    ServerState state_{kFirstSession};
    RequestHandler handler_{state_};
};

/// An object of a built-in class that is called directly, without a server.
class TestObject {
  public:
    explicit TestObject(const std::string& className);

    std::string call(const std::string& method, const std::string& argument = "");
    /// Returns the code with which the call is refused; fails the test if the call succeeds.
    uint32_t callRefused(const std::string& method, const std::string& argument = "");

  private:
    std::shared_ptr<const ServerClass> class_;
    std::unique_ptr<ServerObject> object_;
};

/// Returns the number in 4 bytes, least significant byte first.
std::string littleEndian(uint32_t number);

}  // namespace merrowd::test

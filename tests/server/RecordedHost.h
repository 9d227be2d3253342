// A host whose exchanges with a server in the test's process are recorded.
#pragma once

#include <memory>
#include <string>

#include "InterProcessCommunication/RecordingFile.h"
#include "tests/server/Requests.h"

namespace merrowd::test {

class RecordedHost {
  public:
    explicit RecordedHost(const std::string& path) : file_(path) {}

    /// Lets the server carry out the request and records the exchange.
    Reply send(const Request& request) {
        Reply reply = server_.send(request);
        add(request, reply.bytes());
        return reply;
    }

    /// Records an exchange with any bytes as its reply.
    void add(const Request& request, const CPPByteArray& reply) {
        dovrel::POSTransferObj received;
        received.copyBytesFrom(reply);
        file_.addReply({}, request.object(), received);
    }

    /// Records an exchange that failed.
    void addFailure(const Request& request) { file_.addFailure({}, request.object(), "The line is dead."); }

    /// Both return what the server returned.
    uint32_t registerApplication(const std::string& name = "Demo") {
        return send(registerRequest(name)).number(dovrel::posField::kSession);
    }
    std::string instantiate(uint32_t session, const std::string& className) {
        return send(instantiateRequest(session, className)).data(dovrel::posField::kObject);
    }

  private:
    TestServer server_;
    dovrel::RecordingFile file_;
};

}  // namespace merrowd::test

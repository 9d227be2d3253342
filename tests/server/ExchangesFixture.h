// Exchanges with a state and a log of its own, and a process that records what is asked of it.
#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <string>

#include "server/ControlCalls.h"
#include "server/Exchanges.h"
#include "tests/server/FakeProcess.h"
#include "tests/server/Requests.h"
#include "tests/support/ServerSettings.h"
#include "tests/support/TemporaryFolder.h"

namespace merrowd::test {

namespace posField = dovrel::posField;
using dovrel::test::misbehaviour;
using dovrel::test::refusal;
using dovrel::test::setting;

class ExchangesFixture : public testing::Test {
  protected:
    Outcome send(const Request& request, pid_t sender = 0) {
        return exchanges_.handleData(request.bytes(), sender);
    }
    static Reply readReply(const Outcome& outcome) { return Reply(outcome.parameter->bytes()); }
    static std::string readBytes(const Outcome& outcome) { return bytesToText(outcome.parameter->bytes()); }

    void apply(const std::string& settings) { control_.applyAtStart(settings, "Merrowd.conf"); }

    /// Registers an application, creates an Echo object, then applies the settings.
    void prepare(const std::string& settings) {
        session_ = readReply(send(registerRequest("Demo"))).number(posField::kSession);
        object_ = readReply(send(instantiateRequest(session_, "Echo"))).data(posField::kObject);
        apply(settings);
    }
    Outcome call() { return send(callRequest(session_, object_, "echo", "hello")); }

    std::string logText() const { return folder_.read("Merrowd.log"); }

    const dovrel::test::TemporaryFolder folder_;
    FakeProcess process_;
    ServerState state_{TestServer::kFirstSession};
    ExchangeLog log_{folder_.path("Merrowd.log")};
    Exchanges exchanges_{state_, process_, log_};
    ControlCalls control_{state_, process_, log_};
    uint32_t session_ = 0;
    std::string object_;
};

}  // namespace merrowd::test

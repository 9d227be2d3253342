// What the trace says about the way to the server and about attempts that failed. The platform is a double.
#include <string>
#include <vector>

#include "InterProcessCommunication/Client_to_POS_Communicator.h"
#include "InterProcessCommunication/MacOSXTransferObjForwarder.h"
#include "InterProcessCommunication/POSTransferObj.h"
#include "platform/Trace.h"
#include "tests/InterProcessCommunication/ChannelFixture.h"
#include "tests/platform/TraceLines.h"

namespace dovrel {
namespace {

using test::Launch;
using test::PlatformDouble;
using test::SentEvent;
using Lines = std::vector<std::string>;

class ConnectionTraceTest : public test::ChannelFixture {
  protected:
    std::string setting(const std::string& areas) const { return areas + ",file=" + root.path("trace"); }
    Lines lines() const { return test::traceLinesOf(root.read("trace")); }

    void connect() {
        testing::internal::CaptureStdout();
        Client_to_POS_Communicator().ConnectToServer();
        testing::internal::GetCapturedStdout();
    }
};

TEST_F(ConnectionTraceTest, ServerThatIsLaunched_HasALinePerStep) {
    install();
    platform.launch = [](const Launch&) { return OSStatus{noErr}; };
    answerAlways("awake");
    const Trace trace(setting("connection"));
    connect();
    EXPECT_EQ(lines(),
              (Lines{"connection: find the server application: result 0",
                     "connection: launch the server: result 0", "connection: wake the server: result 0"}));
}

TEST_F(ConnectionTraceTest, Level1_HasTheStepsThatFailed) {
    install();
    platform.processes = {"Merrowd"};
    int handshakes = 0;
    platform.server = [&handshakes](const SentEvent&, AppleEvent* reply) {
        return ++handshakes <= 5 ? OSErr{errAETimeout} : PlatformDouble::answerWith(reply, "awake");
    };
    const Trace trace(setting("connection:1"));
    connect();
    EXPECT_EQ(lines(), Lines{"connection: wake the server: result -1712"});
}

TEST_F(ConnectionTraceTest, ServerThatIsNotInstalled_IsALine) {
    const Trace trace(setting("connection:1"));
    connect();
    EXPECT_EQ(lines(), Lines{"connection: find the server application: result 42"});
}

TEST_F(ConnectionTraceTest, EachFailedAttempt_IsALineOfTheExchange) {
    install();
    platform.processes = {"Merrowd"};
    platform.server = [this](const SentEvent& event, AppleEvent* reply) {
        if (event.eventID != 'data') return PlatformDouble::answerWith(reply, "awake");
        return countOfSent('data') <= 2 ? OSErr{connectionInvalid} : PlatformDouble::answerWith(reply, "x");
    };
    const Trace trace(setting("exchange:1"));
    POSTransferObj request(1, 10, 17);
    delete MacOSXTransferObjForwarder().ForwardTransferObj(request);
    EXPECT_EQ(lines(), (Lines{"exchange: attempt 1: result -609", "exchange: attempt 2: result -609"}));
}

}  // namespace
}  // namespace dovrel

// Tests the trace of connections to the server and of failed attempts. The platform is a double.
#include <memory>
#include <string>
#include <vector>

#include "InterProcessCommunication/Client_to_POS_Communicator.h"
#include "InterProcessCommunication/MacOSXTransferObjForwarder.h"
#include "InterProcessCommunication/POSTransferObj.h"
#include "client/exceptions/CPPException.h"
#include "platform/trace/FailureNotes.h"
#include "tests/InterProcessCommunication/ChannelFixture.h"
#include "tests/support/TraceLines.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using test::Launch;
using test::PlatformDouble;
using test::SentEvent;
using Lines = std::vector<std::string>;

class ConnectionTraceTest : public test::ChannelFixture {
  protected:
    std::string setting(const std::string& areas) const { return areas + ",file=" + root.path("trace"); }
    Lines lines() const { return test::splitTraceLines(root.read("trace")); }

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
    EXPECT_EQ(lines(), Lines{"connection: wake the server: result -1712 (errAETimeout)"});
}

TEST_F(ConnectionTraceTest, ServerThatIsNotInstalled_IsALineWithThePlaceWhereItWasLookedFor) {
    const Trace trace(setting("connection:1"));
    connect();
    EXPECT_EQ(lines(), Lines{"connection: find the server application: result 42 (nothing at " +
                             root.path("Library/Application Support/Tessilor/pos/Merrowd.app") + ")"});
}

TEST_F(ConnectionTraceTest, LaunchThatFails_IsNamedInTheTraceAndInTheNotes) {
    install();
    platform.launch = [](const Launch&) { return OSStatus{kLSNoLaunchPermissionErr}; };
    const FailureNotes notes;
    const Trace trace(setting("connection:1"));
    connect();
    const std::string step = "launch the server: result -10826 (kLSNoLaunchPermissionErr)";
    EXPECT_EQ(lines(), Lines(10, "connection: " + step));
    EXPECT_EQ(notes.failedStep(), step);
}

TEST_F(ConnectionTraceTest, LaunchStatusOfMoreThan16Bits_IsWholeInTheNotes) {
    install();
    platform.launch = [](const Launch&) { return OSStatus{100013}; };
    const FailureNotes notes;
    connect();
    EXPECT_EQ(notes.failedStep(), "launch the server: result 100013 (errno 13)");
}

TEST_F(ConnectionTraceTest, EachFailedAttempt_IsALineOfTheExchange) {
    install();
    platform.processes = {"Merrowd"};
    platform.server = [this](const SentEvent& event, AppleEvent* reply) {
        if (event.eventID != 'data') return PlatformDouble::answerWith(reply, "awake");
        return countSent('data') <= 2 ? OSErr{connectionInvalid} : PlatformDouble::answerWith(reply, "x");
    };
    const Trace trace(setting("exchange:1"));
    POSTransferObj request(1, 10, 17);
    delete MacOSXTransferObjForwarder().ForwardTransferObj(request);
    const std::string begin = "exchange: query interface version: attempt ";
    EXPECT_EQ(lines(), (Lines{begin + "1: result -609 (connectionInvalid)",
                              begin + "2: result -609 (connectionInvalid)"}));
}

TEST_F(ConnectionTraceTest, FailedAttempt_IsNotedUntilALaterOneSucceeds) {
    install();
    platform.processes = {"Merrowd"};
    platform.server = [](const SentEvent& event, AppleEvent* reply) {
        if (event.eventID != 'data') return PlatformDouble::answerWith(reply, "awake");
        return OSErr{errAETimeout};
    };
    const FailureNotes notes;
    POSTransferObj request(1, 10, 14);
    const auto failure =
        test::failureOf([&] { delete MacOSXTransferObjForwarder().ForwardTransferObj(request); });
    ASSERT_NE(failure, nullptr) << "nothing was thrown";
    EXPECT_STREQ(failure->getDetail(), "???");
    EXPECT_EQ(failure->getCode(), 0);
    EXPECT_EQ(notes.failedStep(), "call method: attempt 1: result -1712 (errAETimeout)");

    platform.server = [this](const SentEvent& event, AppleEvent* reply) {
        const bool isAnswered = event.eventID != 'data' || countSent('data') > 2;
        return isAnswered ? PlatformDouble::answerWith(reply, "x") : OSErr{connectionInvalid};
    };
    delete MacOSXTransferObjForwarder().ForwardTransferObj(request);
    EXPECT_EQ(notes.failedStep(), "");
}

// Every sixth handshake is answered: the first five of a connection find a server that is about to end.
TEST_F(ConnectionTraceTest, ServerThatIsGoneInEveryAttempt_LeavesTheLastAttemptInTheNotes) {
    install();
    platform.processes = {"Merrowd"};
    int handshakes = 0;
    platform.server = [&handshakes](const SentEvent& event, AppleEvent* reply) {
        if (event.eventID == 'data') return OSErr{connectionInvalid};
        return ++handshakes % 6 != 0 ? OSErr{procNotFound} : PlatformDouble::answerWith(reply, "awake");
    };
    const FailureNotes notes;
    POSTransferObj request(1, 10, 17);
    delete MacOSXTransferObjForwarder().ForwardTransferObj(request);
    EXPECT_EQ(notes.failedStep(), "query interface version: attempt 20: result -609 (connectionInvalid)");
}

}  // namespace
}  // namespace dovrel

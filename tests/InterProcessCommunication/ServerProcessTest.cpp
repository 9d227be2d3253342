// The channel, the discovery and the forwarder with a real server process that the library launches itself.
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <memory>

#include "InterProcessCommunication/Client_to_POS_Communicator.h"
#include "InterProcessCommunication/IPC_Info.h"
#include "InterProcessCommunication/MacOSXTransferObjForwarder.h"
#include "InterProcessCommunication/POSTransferObj.h"
#include "InterProcessCommunication/ServerDiscovery.h"
#include "client/exceptions/POSException.h"
#include "tests/InterProcessCommunication/InstalledServer.h"
#include "tests/support/UserTexts.h"
#include "tests/support/WaitUntil.h"
#include "tests/support/library/Bytes.h"
#include "tests/support/library/Failures.h"

namespace dovrel {
namespace {

using std::chrono::steady_clock;

using test::kCommunicationError;

class ServerProcessTest : public testing::Test {
  protected:
    // Sends a request with this argument and returns the reply. A well-behaved server
    // returns the bytes of the request.
    std::unique_ptr<POSTransferObj> forward(const std::string& argument) {
        POSTransferObj request(1, 10, 14);
        request.writeString(110, argument);
        return std::unique_ptr<POSTransferObj>(forwarder.ForwardTransferObj(request));
    }

    std::string catchForwardFailure() {
        return test::failureText([this] { forward("request"); });
    }

    double secondsSinceStart() const {
        return std::chrono::duration<double>(steady_clock::now() - start).count();
    }

    test::InstalledServer server;
    Client_to_POS_Communicator communicator;
    MacOSXTransferObjForwarder forwarder;
    const steady_clock::time_point start = steady_clock::now();
};

TEST_F(ServerProcessTest, ConnectToServer_LaunchesTheServerAndWakesIt) {
    server.install();
    EXPECT_FALSE(IsServerRunning());
    EXPECT_EQ(communicator.ConnectToServer(), 0);
    EXPECT_TRUE(IsServerRunning());
    ASSERT_EQ(server.processes().size(), 1u);
    EXPECT_EQ(server.log().back(), "wake startPos");
}

TEST_F(ServerProcessTest, RunningServer_IsUsedWithoutAnotherLaunch) {
    server.install();
    EXPECT_EQ(communicator.ConnectToServer(), 0);
    EXPECT_EQ(communicator.ConnectToServer(), 0);
    EXPECT_EQ(server.processes().size(), 1u);
    EXPECT_EQ(server.countInLog("wake"), 2);
}

TEST_F(ServerProcessTest, WithoutTheInstalledServer_NothingIsLaunched) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(communicator.ConnectToServer(), 42);
    EXPECT_NE(testing::internal::GetCapturedStdout().find("Could not find Merrowd"), std::string::npos);
    EXPECT_FALSE(IsServerRunning());
}

TEST_F(ServerProcessTest, ProcessWhoseNameMerelyBeginsLikeTheServers_DoesNotCount) {
    const std::string program = server.installProgram("Merrowdx");
    pid_t process = 0;
    char* const arguments[] = {const_cast<char*>(program.c_str()), nullptr};
    ASSERT_EQ(posix_spawn(&process, program.c_str(), nullptr, nullptr, arguments, environ), 0);
    // Once the program has written its first log line, the installation ends it even if the test fails.
    EXPECT_TRUE(test::waitUntil([this] { return server.countInLog("start") == 1; }));
    EXPECT_FALSE(IsServerRunning());
    kill(process, SIGKILL);
    EXPECT_EQ(waitpid(process, nullptr, 0), process);
}

TEST_F(ServerProcessTest, Exchange_CarriesEveryByteBothWays) {
    server.install();
    std::string argument;
    for (int i = 0; i < 256; ++i)
        argument.push_back(static_cast<char>(i));
    const std::unique_ptr<POSTransferObj> reply = forward(argument);
    EXPECT_EQ(reply->readString(110), argument);
    EXPECT_EQ(reply->getCommand(), 14u);
}

TEST_F(ServerProcessTest, Exchange_CarriesMegabytes) {
    server.install();
    for (const size_t size : {size_t{1} << 16, size_t{1} << 20, (size_t{5} << 20) + 3}) {
        std::string argument(size, 'x');
        for (size_t i = 0; i < size; i += 251)
            argument[i] = static_cast<char>(i);
        const std::unique_ptr<POSTransferObj> reply = forward(argument);
        EXPECT_TRUE(reply->readString(110) == argument) << size;
    }
    EXPECT_EQ(server.processes().size(), 1u);
}

TEST_F(ServerProcessTest, FirstRequestBeforeAnyConnection_LaunchesTheServerOnTheWay) {
    server.install();
    EXPECT_FALSE(forwarder.isConnected());
    EXPECT_EQ(forward("request")->readString(110), "request");
    EXPECT_TRUE(forwarder.isConnected());
}

TEST_F(ServerProcessTest, ServerKilledBetweenRequests_IsLaunchedAgain) {
    server.install();
    forward("first");
    server.killServer();
    EXPECT_EQ(forward("second")->readString(110), "second");
    EXPECT_EQ(server.processes().size(), 2u);
}

TEST_F(ServerProcessTest, ServerThatDiesDuringTheExchange_IsLaunchedAgainAndTheRequestRepeated) {
    server.install("misbehave=vanishBefore\nmisbehaveTimes=1\n");
    EXPECT_EQ(forward("request")->readString(110), "request");
    EXPECT_EQ(server.processes().size(), 2u);
    EXPECT_EQ(server.countInLog("data"), 2);
}

TEST_F(ServerProcessTest, ServerThatDiesAtEachRequest_IsAskedTwentyTimesInAll) {
    server.install("misbehave=vanishBefore\n");
    forwarder.ConnectToPOS(10);
    const std::unique_ptr<POSTransferObj> reply = forward("request");
    EXPECT_EQ(reply->bytes().getSize(), 0u);
    EXPECT_EQ(server.countInLog("data"), 20);
}

TEST_F(ServerProcessTest, ServerThatDiesDuringTheExchange_IsConnectionInvalidForTheChannel) {
    server.install("misbehave=vanishBefore\n");
    ASSERT_EQ(communicator.ConnectToServer(), 0);
    IPC_Info info;
    EXPECT_EQ(communicator.SendData(info), connectionInvalid);
}

TEST_F(ServerProcessTest, ServerThatDoesNotRun_IsProcNotFoundForTheChannel) {
    server.install();
    IPC_Info info;
    EXPECT_EQ(communicator.SendData(info), procNotFound);
    EXPECT_EQ(communicator.WakeServer(1000, 5), procNotFound);
}

TEST_F(ServerProcessTest, ServerWithoutAHandlerForData_IsTheCommunicationError) {
    server.install("misbehave=noHandler\n");
    EXPECT_EQ(catchForwardFailure(), kCommunicationError);
    EXPECT_EQ(server.processes().size(), 1u);
}

TEST_F(ServerProcessTest, AnswerWithoutADirectParameter_IsTheCommunicationError) {
    server.install("misbehave=noParameter\n");
    EXPECT_EQ(catchForwardFailure(), kCommunicationError);
    EXPECT_EQ(server.countInLog("data"), 1);
}

TEST_F(ServerProcessTest, EmptyAnswer_IsAnEmptyReply) {
    server.install("misbehave=empty\n");
    EXPECT_EQ(forward("request")->bytes().getSize(), 0u);
    EXPECT_EQ(server.countInLog("data"), 1);
}

TEST_F(ServerProcessTest, HandshakeAnsweredWithAnEmptyDirectParameter_CountsAsAwake) {
    server.install("handshake=empty\n");
    EXPECT_EQ(communicator.ConnectToServer(), 0);
    EXPECT_EQ(server.countInLog("wake"), 1);
}

TEST_F(ServerProcessTest, HandshakeAnsweredWithoutADirectParameter_DoesNotCountAsAwake) {
    server.install();
    ASSERT_EQ(communicator.ConnectToServer(), 0);
    server.setBehaviour("handshake=noParameter\n");
    EXPECT_EQ(communicator.WakeServer(1000, 5), errAEDescNotFound);
    EXPECT_EQ(server.countInLog("wake"), 2);
}

TEST_F(ServerProcessTest, WakeServer_WithAServerThatNeverReplies_TakesFiveSecondsAndTimesOut) {
    server.install();
    ASSERT_EQ(communicator.ConnectToServer(), 0);
    kill(server.processes().back(), SIGSTOP);
    const double before = secondsSinceStart();
    EXPECT_EQ(communicator.WakeServer(1000, 5), errAETimeout);
    EXPECT_GE(secondsSinceStart() - before, 5.0);
}

TEST_F(ServerProcessTest, LateAnswers_AreNotTakenForTheAnswerToTheNextRequest) {
    server.install();
    ASSERT_EQ(communicator.ConnectToServer(), 0);
    kill(server.processes().back(), SIGSTOP);
    EXPECT_EQ(communicator.WakeServer(100, 2), errAETimeout);
    kill(server.processes().back(), SIGCONT);
    EXPECT_EQ(forward("request")->readString(110), "request");
}

TEST_F(ServerProcessTest, QuitServer_EndsTheServer) {
    server.install();
    ASSERT_EQ(communicator.ConnectToServer(), 0);
    EXPECT_EQ(communicator.QuitServer(), 0);
    EXPECT_TRUE(server.serverEnds());
    EXPECT_EQ(server.log().back(), "end");
}

TEST_F(ServerProcessTest, QuitServer_WithoutAServer_IsSuccess) {
    EXPECT_EQ(communicator.QuitServer(), 0);
}

}  // namespace
}  // namespace dovrel

// Finding and launching the server: which steps are taken, in which order and how often, and what the console
// says on failure. The platform is a double, so that ten handshakes of five seconds take no time.
#include <cerrno>

#include "InterProcessCommunication/Client_to_POS_Communicator.h"
#include "tests/InterProcessCommunication/ChannelFixture.h"
#include "tests/support/UserTexts.h"

namespace dovrel {
namespace {

using test::kNotFoundBlock;
using test::Launch;
using test::launchFailureBlock;
using test::PlatformDouble;
using test::SentEvent;

class ConnectToServerTest : public test::ChannelFixture {
  protected:
    int32_t connect() {
        testing::internal::CaptureStdout();
        const int32_t result = Client_to_POS_Communicator().ConnectToServer();
        console = testing::internal::GetCapturedStdout();
        return result;
    }

    void serverRuns() { platform.processes = {"Merrowd"}; }
    void serverDoesNotRun() { platform.processes = {"another"}; }

    // Makes launches return this status without starting a process.
    void launchesEndWith(OSStatus status) {
        platform.launch = [status](const Launch&) { return status; };
    }

    std::string console;
};

TEST_F(ConnectToServerTest, RunningServerThatRepliesToTheFirstHandshake_IsUsedWithoutALaunch) {
    install();
    serverRuns();
    answerAlways("awake");
    launchesEndWith(noErr);
    EXPECT_EQ(connect(), 0);
    EXPECT_EQ(countSent('waCl'), 1);
    EXPECT_TRUE(platform.launches.empty());
    EXPECT_TRUE(platform.sleeps.empty());
    EXPECT_EQ(console, "");
}

TEST_F(ConnectToServerTest, ServerThatDoesNotRun_IsLaunchedThenWoken) {
    install();
    serverDoesNotRun();
    platform.launch = [this](const Launch&) {
        EXPECT_TRUE(platform.sent.empty());
        return OSStatus{noErr};
    };
    answerAlways("awake");
    EXPECT_EQ(connect(), 0);
    EXPECT_EQ(platform.launches.size(), 1u);
    EXPECT_EQ(countSent('waCl'), 1);
    EXPECT_EQ(console, "");
}

TEST_F(ConnectToServerTest, WithoutTheBundle_NoLaunchIsTriedAndTheResultIs42) {
    serverDoesNotRun();
    answerAlways("awake");
    launchesEndWith(noErr);
    EXPECT_EQ(connect(), 42);
    EXPECT_TRUE(platform.launches.empty());
    EXPECT_TRUE(platform.sent.empty());
    EXPECT_EQ(platform.queries, 0);
    EXPECT_EQ(console, kNotFoundBlock);
}

TEST_F(ConnectToServerTest, FailedFolderLookup_IsItsErrorWithTheNotFoundBlock) {
    install();
    serverRuns();
    answerAlways("awake");
    platform.findFolderResult = fnfErr;
    EXPECT_EQ(connect(), -43);
    EXPECT_TRUE(platform.sent.empty());
    EXPECT_EQ(console, kNotFoundBlock);
}

TEST_F(ConnectToServerTest, RunningServerThatNeverReplies_IsWokenTenTimesAndThenGivenUpWith43) {
    install();
    serverRuns();
    failAlways(errAETimeout);
    launchesEndWith(noErr);
    EXPECT_EQ(connect(), 43);
    EXPECT_EQ(countSent('waCl'), 50);
    EXPECT_EQ(platform.sleeps, std::vector<unsigned>(9, 100));
    EXPECT_TRUE(platform.launches.empty());
    EXPECT_EQ(console, launchFailureBlock("-1712"));
}

TEST_F(ConnectToServerTest, EveryWakeUp_IsFiveEventsOfOneSecond) {
    install();
    serverRuns();
    failAlways(errAETimeout);
    connect();
    // Ten passes of five events each.
    EXPECT_EQ(platform.sent.size(), 50u);
    for (const SentEvent& event : platform.sent) {
        EXPECT_EQ(event.eventID, AEEventID{'waCl'});
        EXPECT_EQ(event.timeOutTicks, 60);
    }
}

TEST_F(ConnectToServerTest, LaunchThatAlwaysFails_IsTriedTenTimesAndNothingIsWoken) {
    install();
    serverDoesNotRun();
    answerAlways("awake");
    launchesEndWith(-10810);
    EXPECT_EQ(connect(), 43);
    EXPECT_EQ(platform.launches.size(), 10u);
    EXPECT_TRUE(platform.sent.empty());
    EXPECT_EQ(platform.sleeps, std::vector<unsigned>(9, 100));
    EXPECT_EQ(console, launchFailureBlock("-10810"));
}

TEST_F(ConnectToServerTest, ServerThatStartsLate_IsFoundInALaterPass) {
    install();
    serverDoesNotRun();
    platform.launch = [this](const Launch&) {
        if (platform.launches.size() < 3) return OSStatus{-10822};
        serverRuns();
        return OSStatus{noErr};
    };
    platform.server = [this](const SentEvent&, AppleEvent* reply) {
        if (platform.sent.size() < 8) return OSErr{procNotFound};
        return PlatformDouble::answerWith(reply, "awake");
    };
    EXPECT_EQ(connect(), 0);
    EXPECT_EQ(platform.launches.size(), 3u);
    EXPECT_EQ(countSent('waCl'), 8);
    // The passes: two failed launches, a launch with five handshakes, and a wake-up
    // with a reply to its third event.
    EXPECT_EQ(platform.sleeps.size(), 3u);
    EXPECT_EQ(console, "");
}

TEST_F(ConnectToServerTest, SuccessInTheLastPass_IsSuccess) {
    install();
    serverRuns();
    platform.server = [this](const SentEvent&, AppleEvent* reply) {
        if (platform.sent.size() <= 49) return OSErr{errAETimeout};
        return PlatformDouble::answerWith(reply, "");
    };
    EXPECT_EQ(connect(), 0);
    EXPECT_EQ(platform.sleeps.size(), 9u);
    EXPECT_EQ(console, "");
}

TEST_F(ConnectToServerTest, RememberedError_IsThatOfTheLastPass) {
    install();
    serverDoesNotRun();
    platform.launch = [this](const Launch&) {
        if (platform.launches.size() == 9) serverRuns();
        return OSStatus{platform.launches.size() == 9 ? noErr : -10827};
    };
    failAlways(connectionInvalid);
    EXPECT_EQ(connect(), 43);
    EXPECT_EQ(platform.launches.size(), 9u);
    EXPECT_EQ(countSent('waCl'), 10);
    EXPECT_EQ(console, launchFailureBlock("-609"));
}

TEST_F(ConnectToServerTest, LaunchStatusBeyond16Bits_IsCutInTheMessageAndStillAFailure) {
    install();
    serverDoesNotRun();
    launchesEndWith(100002);
    EXPECT_EQ(connect(), 43);
    EXPECT_EQ(console, launchFailureBlock("-31070"));  // 100002 = 0x186A2, 0x86A2 as a signed number

    launchesEndWith(0x10000);
    EXPECT_EQ(connect(), 43);
    EXPECT_EQ(console, launchFailureBlock("0"));
    EXPECT_TRUE(platform.sent.empty());
}

TEST_F(ConnectToServerTest, ProcessListThatCannotBeRead_HasTheServerLaunched) {
    install();
    serverRuns();
    platform.queryErrors = {{1, EPERM}};
    answerAlways("awake");
    launchesEndWith(noErr);
    EXPECT_EQ(connect(), 0);
    EXPECT_EQ(platform.launches.size(), 1u);
}

TEST_F(ConnectToServerTest, ServerThatRepliesWithoutADirectParameter_IsNotAwake) {
    install();
    serverRuns();
    answerAlways(std::nullopt);
    EXPECT_EQ(connect(), 43);
    EXPECT_EQ(countSent('waCl'), 10);
    EXPECT_EQ(console, launchFailureBlock("-1701"));
}

}  // namespace
}  // namespace dovrel

// Finding, launching and waking the server.
#include <signal.h>

#include <filesystem>
#include <string>

#include "tests/endtoend/EndToEnd.h"
#include "tests/endtoend/OtherHost.h"
#include "tests/support/UserTexts.h"

namespace dovrel::test {
namespace {

constexpr char kUnrecoverable[] = "DLL_ERROR_UNRECOVERABLE_ERROR";
constexpr char kMissing[] = "DLL_MSG_MERROWD_IS_MISSING_MACOSX";
constexpr char kCorrupt[] = "DLL_MSG_MERROWD_IS_CORRUPT_MACOSX";

class Launch : public InSession {
  protected:
    // Expects that the registration fails, with one alert and with these blocks on the console.
    void expectFailure(const std::string& messageKey, const std::string& output) {
        uint32_t application = 4711;
        Console console;
        EXPECT_EQ(host_.registerApplication(application), POS_FAILURE);
        console.stop();
        EXPECT_EQ(console.output(), output);
        EXPECT_EQ(countFailures(console, texts_.text(messageKey), kUnrecoverable), 1u) << console.systemLog();
        EXPECT_EQ(alerts(console), 1u);
        EXPECT_EQ(application, 4711u);
    }
};

TEST_F(Launch, WithoutAnInstalledServer_ThePrintedBlockAndTheAlertSaySoAndNothingIsLaunched) {
    root_.removeServer();
    expectFailure(kMissing, kNotFoundBlock);
    EXPECT_EQ(root_.servers().size(), 0u);
}

TEST_F(Launch, WithoutTheApplicationSupportFolder_TheServerIsNotFoundEither) {
    root_.removeServer();
    std::filesystem::remove_all(root_.path() + "/Library/Application Support/Tessilor");
    expectFailure(kMissing, kNotFoundBlock);
}

TEST_F(Launch, WithoutAnInstalledServer_AnInformationRequestFailsTheSameWay) {
    root_.removeServer();
    Console console;
    EXPECT_EQ(host_.information(1, "?").status, POS_FAILURE);
    console.stop();
    EXPECT_EQ(console.output(), kNotFoundBlock);
    EXPECT_EQ(alerts(console), 1u);
}

TEST_F(Launch, AServerThatCannotBeExecuted_IsALaunchFailureWithTheLaunchersError) {
    root_.makeServerUnexecutable();
    constexpr char kNoLaunchPermission[] = "-10826";
    expectFailure(kCorrupt, launchFailureBlock(kNoLaunchPermission));
}

TEST_F(Launch, AServerWithoutItsProgram_IsALaunchFailureWithTheLaunchersError) {
    std::filesystem::remove(root_.serverExecutable());
    constexpr char kNoExecutable[] = "-10827";
    expectFailure(kCorrupt, launchFailureBlock(kNoExecutable));
}

TEST_F(Launch, AServerThatEndsAtOnce_IsALaunchFailure) {
    root_.configure(setting("endAtStart", 1));
    uint32_t application = 0;
    Console console;
    EXPECT_EQ(host_.registerApplication(application), POS_FAILURE);
    console.stop();
    constexpr char kNoProcess[] = "-600";
    constexpr char kConnectionInvalid[] = "-609";  // the server ended during the last event
    EXPECT_TRUE(console.output() == launchFailureBlock(kNoProcess) ||
                console.output() == launchFailureBlock(kConnectionInvalid))
        << console.output();
    EXPECT_EQ(countFailures(console, texts_.text(kCorrupt), kUnrecoverable), 1u);
}

TEST_F(Launch, AHandshakeAnsweredWithAnEmptyParameter_CountsAsAwake) {
    root_.configure(setting("handshake", "empty"));
    host_.registered();
}

TEST_F(Launch, AHandshakeAnsweredWithoutAParameter_DoesNotCountAsAwakeTenTimesInARow) {
    root_.configure(setting("log", 1));
    OtherHost other(root_.library());
    other.goAndStay();
    ASSERT_TRUE(other.isServed());
    ServerControl::send(setting("handshake", "noParameter"));
    const size_t handshakesBefore = countInServerLog(" handshake");
    constexpr char kDescriptorNotFound[] = "-1701";
    expectFailure(kCorrupt, launchFailureBlock(kDescriptorNotFound));
    EXPECT_EQ(countInServerLog(" handshake"), handshakesBefore + 10)
        << "an answer ends the sends of one handshake";
    EXPECT_EQ(root_.servers().size(), 1u);
}

TEST_F(Launch, AfterALaunchFailure_TheNextRegistrationTriesAnew) {
    root_.configure(setting("endAtStart", 1));
    uint32_t application = 0;
    Console console;
    EXPECT_EQ(host_.registerApplication(application), POS_FAILURE);
    console.stop();
    root_.configure("");
    EXPECT_EQ(host_.registerApplication(application), POS_OK);
}

TEST_F(Launch, ARunningServer_IsUsedWithoutALaunch) {
    host_.registered();
    const std::vector<pid_t> before = root_.servers();
    ASSERT_EQ(before.size(), 1u);
    OtherHost other(root_.library());
    other.go();
    EXPECT_TRUE(other.endsWell());
    EXPECT_EQ(root_.servers(), before);
}

TEST_F(Launch, TwoHostsAtTheSameMoment_EndUpWithOneServerThatServesBoth) {
    for (int round = 0; round < 10; ++round) {
        OtherHost one(root_.library());
        OtherHost two(root_.library());
        one.go();
        two.go();
        EXPECT_TRUE(one.endsWell());
        EXPECT_TRUE(two.endsWell());
        EXPECT_EQ(root_.servers().size(), 1u);
        root_.endServers(SIGKILL);
    }
}

}  // namespace
}  // namespace dovrel::test

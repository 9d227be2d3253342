// The session: opening, closing, registering and unregistering.
#include <filesystem>

#include "tests/endtoend/EndToEnd.h"

namespace dovrel::test {
namespace {

class Life : public EndToEnd {};

std::ptrdiff_t threads() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

TEST_F(Life, InitializePOS_ASecondTime_KeepsSessionAndRegistrations) {
    EXPECT_EQ(library_.InitializePOS(), POS_OK);
    const uint32_t application = host_.registered({"Echo"});
    ObjectId echo = host_.instantiate(application, "Echo");
    EXPECT_EQ(library_.InitializePOS(), POS_OK);
    EXPECT_EQ(host_.call(application, echo, "echo", "still there").bytes, "still there");
    library_.TerminatePOS();
}

TEST_F(Life, TerminatePOS_WithoutAnApplication_SendsNothingToTheServer) {
    library_.InitializePOS();
    library_.TerminatePOS();
    EXPECT_EQ(root_.servers().size(), 0u);
}

TEST_F(Life, TerminatePOS_UnregistersWhatIsLeft) {
    library_.InitializePOS();
    host_.registered();
    host_.registered();
    EXPECT_EQ(ServerControl::status().at("applications"), 2);
    library_.TerminatePOS();
    EXPECT_EQ(ServerControl::status().at("applications"), 0);
}

TEST_F(Life, TerminatePOS_UnregistersInAscendingOrder) {
    root_.configure(setting("log", 1));
    library_.InitializePOS();
    const uint32_t one = host_.registered();
    const uint32_t two = host_.registered();
    library_.TerminatePOS();
    const std::string log = root_.serverLog();
    const std::string request = " unregister application";
    const size_t first = log.find(request);
    const size_t second = log.find(request, first + 1);
    EXPECT_NE(log.find("identifier = " + std::to_string(one) + "\n", first), std::string::npos);
    EXPECT_LT(log.find("identifier = " + std::to_string(one) + "\n", first), second);
    EXPECT_NE(log.find("identifier = " + std::to_string(two) + "\n", second), std::string::npos);
}

TEST_F(Life, InitializePOS_AfterTerminatePOS_BuildsAFreshSession) {
    library_.InitializePOS();
    const uint32_t old = host_.registered();
    library_.TerminatePOS();
    library_.InitializePOS();
    Console console;
    EXPECT_EQ(host_.command(old, "ping").status, POS_FAILURE);
    console.stop();
    EXPECT_EQ(alerts(console), 0u) << "the fresh session does not know the application and asks nobody";
    EXPECT_EQ(host_.command(host_.registered(), "ping", "fresh").bytes, "fresh");
    library_.TerminatePOS();
}

TEST_F(Life, UnregisterApplication_ThatWasNeverRegistered_FailsWithoutADialog) {
    library_.InitializePOS();
    Console console;
    EXPECT_EQ(library_.posUnregisterApplication(4711), POS_FAILURE);
    console.stop();
    EXPECT_EQ(alerts(console), 0u);
    EXPECT_EQ(root_.servers().size(), 0u);
    library_.TerminatePOS();
}

TEST_F(Life, UnregisterApplication_ThatTheServerRefuses_IsReportedAndTheRegistrationStays) {
    library_.InitializePOS();
    const uint32_t application = host_.registered();
    ServerControl::send(refusal("unregister application", 23, "Not now.", 1));
    Console console;
    EXPECT_EQ(library_.posUnregisterApplication(application), POS_FAILURE);
    console.stop();
    EXPECT_EQ(countFailures(console, "Not now.", "DLL_ERROR_UNRECOVERABLE_ERROR"), 1u);
    EXPECT_EQ(host_.command(application, "ping", "here").bytes, "here");
    EXPECT_EQ(library_.posUnregisterApplication(application), POS_OK);
    library_.TerminatePOS();
}

TEST_F(Life, RegistrationWithANullName_RegistersTheEmptyName) {
    root_.configure(setting("log", 1));
    library_.InitializePOS();
    uint32_t application = 0;
    EXPECT_EQ(library_.posRegisterApplicationWithClasses(nullptr, nullptr, 0, nullptr, 0, &application),
              POS_OK);
    EXPECT_EQ(countInServerLog("100 application name = \"\"\n"), 1u);
    library_.TerminatePOS();
}

TEST_F(Life, OfASession_StartsNoThread) {
    const std::ptrdiff_t before = threads();
    library_.InitializePOS();
    EXPECT_EQ(threads(), before);
    const uint32_t application = host_.registered({"Echo"});
    ObjectId echo = host_.instantiate(application, "Echo");
    EXPECT_EQ(host_.call(application, echo, "echo", "on this thread").bytes, "on this thread");
    EXPECT_EQ(threads(), before);
    library_.TerminatePOS();
    EXPECT_EQ(threads(), before);
}

TEST_F(Life, AHostThatLoadsAndUnloadsTheBundleAgainAndAgain_IsServedEachTime) {
    for (int i = 0; i < 50; ++i) {
        Host host(root_);
        host.library().InitializePOS();
        EXPECT_EQ(host.command(host.registered(), "ping", "again").bytes, "again");
        host.library().TerminatePOS();
    }
    EXPECT_EQ(ServerControl::status().at("applications"), 0);
}

}  // namespace
}  // namespace dovrel::test

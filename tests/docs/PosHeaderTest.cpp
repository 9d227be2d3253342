// Tests the statements of include/dovrel/pos.h about sessions, applications, objects and
// processes that no other test checks.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/endtoend/EndToEnd.h"
#include "tests/support/Processes.h"

namespace dovrel::test {
namespace {

class PosHeader : public EndToEnd {
  protected:
    PosHeader() { library_.InitializePOS(); }

    // Runs `use` in a child process; returns true if `use` returned true there.
    template <typename Use>
    static bool holdsInChild(const Use& use) {
        return inForkedProcess([&use] { return use() ? 0 : 1; }) == 0;
    }
};

TEST_F(PosHeader, AfterAServerRestart_RegisteringAnewServesAgain) {
    const uint32_t old = host_.registered({"Echo"});
    ObjectId oldObject = host_.instantiate(old, "Echo");
    root_.endServers(SIGKILL);
    Console console;
    EXPECT_EQ(host_.call(old, oldObject, "echo").status, POS_FAILURE);
    EXPECT_EQ(host_.information(old, littleEndian(3).substr(0, 2)).status, POS_OK) << "needs no registration";
    const uint32_t application = host_.registered({"Echo"});
    EXPECT_EQ(host_.call(application, oldObject, "echo").status, POS_FAILURE) << "objects are gone";
    ObjectId object = host_.instantiate(application, "Echo");
    EXPECT_EQ(host_.call(application, object, "echo", "again").bytes, "again");
    EXPECT_EQ(library_.posUnregisterApplication(old), POS_FAILURE)
        << "the old identifier can only be dropped";
    EXPECT_EQ(library_.posUnregisterApplication(application), POS_OK);
    library_.TerminatePOS();
    console.stop();
    EXPECT_EQ(alerts(console), 3u);
}

TEST_F(PosHeader, TerminatePOS_StopsAtTheFirstApplicationThatTheServerRefuses) {
    host_.registered();
    host_.registered();
    host_.registered();
    ServerControl::send(refusal("unregister application", 23, "", 1) + setting("misbehaveSkip", 1));
    Console console;
    library_.TerminatePOS();
    console.stop();
    EXPECT_EQ(ServerControl::status().at("applications"), 2);
    EXPECT_EQ(alerts(console), 0u);
}

TEST_F(PosHeader, TerminatePOS_WhenTheServerHasEnded_LaunchesItAndWaitsForIt) {
    host_.registered();
    root_.endServers(SIGTERM);
    Console console;
    library_.TerminatePOS();
    console.stop();
    EXPECT_EQ(root_.servers().size(), 1u);
    EXPECT_EQ(alerts(console), 0u);
    EXPECT_EQ(console.output(), "");
}

TEST_F(PosHeader, TerminatePOS_WithoutAnInstalledServer_PrintsTheBlockAndShowsNoAlert) {
    host_.registered();
    root_.endServers(SIGTERM);
    root_.removeServer();
    Console console;
    library_.TerminatePOS();
    console.stop();
    EXPECT_EQ(countOccurrences(console.output(), " Could not find Merrowd server application! \n"), 1u);
    EXPECT_EQ(alerts(console), 0u);
}

TEST_F(PosHeader, Unregistration_DeletesTheObjectsInTheDevelopmentServer) {
    const uint32_t first = host_.registered({"Echo"});
    ObjectId object = host_.instantiate(first, "Echo");
    EXPECT_EQ(ServerControl::status().at("objects"), 1);
    EXPECT_EQ(library_.posUnregisterApplication(first), POS_OK);
    EXPECT_EQ(ServerControl::status().at("objects"), 0);
    const uint32_t second = host_.registered({"Echo"});
    Console console;
    EXPECT_EQ(host_.call(second, object, "echo").status, POS_FAILURE);
    console.stop();
    EXPECT_EQ(alerts(console), 1u);
    library_.TerminatePOS();
}

TEST_F(PosHeader, TwoApplications_CannotUseEachOthersObjects) {
    const uint32_t owner = host_.registered({"Echo"});
    ObjectId object = host_.instantiate(owner, "Echo");
    const uint32_t other = host_.registered({"Echo"});
    Console console;
    EXPECT_EQ(host_.call(other, object, "echo").status, POS_FAILURE);
    console.stop();
    EXPECT_EQ(host_.call(owner, object, "echo", "mine").bytes, "mine");
    library_.TerminatePOS();
}

TEST_F(PosHeader, Fork_ChildThatUsesNothing_LeavesTheParentsSessionAsItIs) {
    const uint32_t application = host_.registered({"Echo"});
    ObjectId object = host_.instantiate(application, "Echo");
    EXPECT_TRUE(holdsInChild([] { return true; }));
    EXPECT_EQ(host_.call(application, object, "echo", "the parent's").bytes, "the parent's");
    library_.TerminatePOS();
}

TEST_F(PosHeader, Fork_BeforeInitializePOS_LetsBothProcessesHaveASession) {
    library_.TerminatePOS();
    EXPECT_TRUE(holdsInChild([this] {
        library_.InitializePOS();
        const bool isServed = host_.command(host_.registered(), "ping", "child").bytes == "child";
        library_.TerminatePOS();
        return isServed;
    }));
    library_.InitializePOS();
    EXPECT_EQ(host_.command(host_.registered(), "ping", "parent").bytes, "parent");
    library_.TerminatePOS();
}

TEST_F(PosHeader, Unloading_LeavesTheSessionThatTheNextLoadingFinds) {
    const uint32_t application = [this] {
        Host passing(root_);
        return passing.registered();
    }();
    Host host(root_);
    EXPECT_EQ(host.command(application, "ping", "still there").bytes, "still there");
    host.library().TerminatePOS();
}

TEST_F(PosHeader, ApplicationName_MayChangeAsSoonAsTheCallHasReturned) {
    char name[] = "Given at first";
    uint32_t application = 0;
    EXPECT_EQ(library_.posRegisterApplicationWithClasses(name, nullptr, 0, nullptr, 0, &application), POS_OK);
    name[0] = 'X';
    ServerControl::send(refusal("execute command", 23, "No.", 1));
    Console console;
    host_.command(application, "ping");
    console.stop();
    EXPECT_EQ(
        countAlerts(console, texts_.failureBody("Given at first", "No.", "DLL_ERROR_UNRECOVERABLE_ERROR")),
        1u);
    library_.TerminatePOS();
}

TEST_F(PosHeader, ApplicationNamesAndErrorTexts_InUtf8OrMacRoman_ReadTheSameInAlerts) {
    const std::string inUtf8 = "Gr\303\266\303\237enpr\303\274fer";
    const std::string inMacRoman = "Gr\232\247enpr\237fer";
    for (const std::string& name : {inUtf8, inMacRoman}) {
        uint32_t application = 0;
        EXPECT_EQ(host_.registerApplication(application, {}, {}, name), POS_OK);
        ServerControl::send(refusal("execute command", 23, name + "?", 1));
        Console console;
        EXPECT_EQ(host_.command(application, "ping").status, POS_FAILURE);
        console.stop();
        EXPECT_EQ(
            countAlerts(console, texts_.failureBody(inUtf8, inUtf8 + "?", "DLL_ERROR_UNRECOVERABLE_ERROR")),
            1u)
            << console.systemLog();
    }
    library_.TerminatePOS();
}

}  // namespace
}  // namespace dovrel::test

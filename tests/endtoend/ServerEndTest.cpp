// How the server ends when it is asked to end.
#include <signal.h>

#include <thread>

#include "tests/endtoend/EndToEnd.h"
#include "tests/endtoend/OtherHost.h"

namespace dovrel::test {
namespace {

class ServerEnd : public InSession {};

TEST_F(ServerEnd, ByAQuitEvent_IsCleanAndImmediate) {
    root_.configure(setting("log", 1));
    library_.posUnregisterApplication(host_.registered());
    ServerControl::quit();
    root_.waitForServers(0);
    EXPECT_EQ(countInServerLog(" ended\n"), 1u);
}

TEST_F(ServerEnd, QuitWithoutAServer_IsNotAFailure) {
    ServerControl::quit();
}

TEST_F(ServerEnd, ByASignal_IsClean) {
    root_.configure(setting("log", 1));
    library_.posUnregisterApplication(host_.registered());
    root_.endServers(SIGTERM);
    EXPECT_EQ(countInServerLog(" ended by signal 15\n"), 1u);
}

TEST_F(ServerEnd, ByASignalWhileItHangs_IsClean) {
    root_.configure(setting("log", 1));
    host_.registered();
    ServerControl::send(misbehaviour("silent", "execute command", 1));
    OtherHost waiting(root_.library());
    waiting.go();
    root_.waitForServerLog(" execute command");
    for (const pid_t server : root_.servers())
        kill(server, SIGTERM);
    root_.waitForServerLog(" ended by signal 15\n");
}

TEST_F(ServerEnd, WithItsLastClient_WhereAsked) {
    root_.configure(setting("endWithLastClient", 1));
    const uint32_t one = host_.registered();
    const uint32_t two = host_.registered();
    EXPECT_EQ(library_.posUnregisterApplication(one), POS_OK);
    EXPECT_EQ(root_.servers().size(), 1u);
    EXPECT_EQ(library_.posUnregisterApplication(two), POS_OK);
    root_.waitForServers(0);
}

TEST_F(ServerEnd, WithItsLastClient_AlsoWhenThatWasKilled) {
    root_.configure(setting("endWithLastClient", 1));
    OtherHost client(root_.library());
    client.goAndStay();
    EXPECT_TRUE(client.isServed());
    EXPECT_EQ(root_.servers().size(), 1u);
    client.kill();
    root_.waitForServers(0);
}

TEST_F(ServerEnd, ASettingsFileFullOfNonsense_IsLoggedAndTheServerWorks) {
    root_.configure(
        std::string(
            "no key line\n//log\nINT:1\n//log\nINT:0\n//delay\nSTR:soon\n//unknown\nINT:1\n//CLASS\nSTR:\n"
            "//CLASS\nSTR:Scanner\n//methods\nSTR:scan\n//scan.delay\nSTR:x\n//x\nXYZ:1\n//") +
        std::string(5000, 'x') + "\nBAR:zz\n");
    EXPECT_TRUE(host_.instantiate(host_.registered({"Scanner"}), "Scanner").isThere());
    for (const char* const problem :
         {": line 6: the value \"soon\" of \"delay\" does not fit; expected a number",
          ": line 8: there is no setting \"unknown\"\n", ": line 10: a class has no name\n",
          ": line 16: class \"Scanner\": the value \"x\" of \"scan.delay\" does not fit"})
        EXPECT_EQ(countInServerLog(problem), 1u) << problem;
    EXPECT_EQ(countInServerLog(" #1 "), 2u) << "the first of two entries for the log counts";
}

TEST_F(ServerEnd, WithItsLastClient_AlsoIfNoneEverCame) {
    root_.configure("//endWithLastClient\nINT:1\n//waitForClient\nINT:100\n");
    const std::string version("\1\0", 2);
    EXPECT_EQ(host_.information(0, version).status, POS_OK) << "launches the server and registers nothing";
    root_.waitForServers(0);
}

TEST_F(ServerEnd, ByASignalWhileItHangs_TheCallThatWaitsGoesToTheNextServer) {
    root_.configure("//log\nINT:1\n");
    host_.registered();
    ServerControl::send(
        "//misbehave\nSTR:silent\n//misbehaveCommand\nSTR:get information\n//misbehaveTimes\nINT:1\n");
    const pid_t first = root_.servers().at(0);
    std::thread teller([this, first] {
        root_.waitForServerLog(" get information");
        kill(first, SIGTERM);
    });
    Console console;
    const Answered answered = host_.information(0, std::string("\1\0", 2));
    console.stop();
    teller.join();
    EXPECT_EQ(answered.status, POS_OK) << console.systemLog();
    EXPECT_EQ(alerts(console), 0u);
    root_.waitForServerLog(" ended by signal 15\n");
}

}  // namespace
}  // namespace dovrel::test

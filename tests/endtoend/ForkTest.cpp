// Processes that a host forks: a session belongs to one process.
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "tests/endtoend/EndToEnd.h"

namespace dovrel::test {
namespace {

class Fork : public EndToEnd {
  protected:
    Fork() { library_.InitializePOS(); }
    ~Fork() override { library_.TerminatePOS(); }

    // Returns whether `check` holds in a forked process. A process that does not return is killed.
    template <typename Check>
    static bool holdsInChild(const Check& check) {
        constexpr unsigned kLongestLife = 20;
        const pid_t child = fork();
        if (child == 0) {
            alarm(kLongestLife);
            _exit(check() ? 0 : 1);
        }
        int status = -1;
        waitpid(child, &status, 0);
        return status == 0;
    }
};

TEST_F(Fork, EveryFunctionOfTheChild_FailsAtOnceAndClearsItsOutputs) {
    const uint32_t application = host_.registered({"Echo"});
    ObjectId echo = host_.instantiate(application, "Echo");
    const size_t objectsBefore = static_cast<size_t>(ServerControl::status()["objects"]);
    EXPECT_TRUE(holdsInChild([&] {
        uint32_t other = 4711;
        if (host_.registerApplication(other) != POS_FAILURE || other != 4711) return false;
        uint8_t junk = 0;
        uint8_t* result = &junk;
        uint32_t length = 1;
        if (library_.posCallMethod(application, echo.handle(), "echo", &junk, 1, &result, &length) !=
                POS_FAILURE ||
            result != nullptr || length != 0) {
            return false;
        }
        const Answered answered = host_.command(application, "ping", "x");
        const bool isInformed = host_.information(application, littleEndian(3).substr(0, 2)).status == POS_OK;
        return answered.status == POS_FAILURE && !isInformed &&
               library_.posDeleteObject(application, echo.handle()) == POS_FAILURE &&
               library_.posUnregisterApplication(application) == POS_FAILURE &&
               library_.TerminatePOS() == POS_FAILURE && library_.InitializePOS() == POS_FAILURE;
    }));
    EXPECT_EQ(host_.call(application, echo, "echo", "still mine").bytes, "still mine");
    EXPECT_EQ(static_cast<size_t>(ServerControl::status()["objects"]), objectsBefore);
}

TEST_F(Fork, ChildThatIsForkedDuringACallOfAnotherThread_FailsAtOnce) {
    root_.configure("//log\nINT:1\n");
    const uint32_t application = host_.registered();
    ServerControl::send(
        "//misbehave\nSTR:late\n//delay\nINT:1000\n//misbehaveCommand\nSTR:execute command\n");
    std::thread caller([&] { EXPECT_EQ(host_.command(application, "ping", "late").bytes, "late"); });
    root_.waitForServerLog(" execute command");
    EXPECT_TRUE(
        holdsInChild([&] { return host_.command(application, "ping", "child").status == POS_FAILURE; }));
    caller.join();
}

TEST_F(Fork, ChildThatRunsOn_DoesNotPreventOtherHostsFromLaunchingTheNextServer) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    std::vector<pid_t> children;
    std::thread forking([&] {
        for (int i = 0; i < 20; ++i) {
            const pid_t child = fork();
            if (child == 0) {
                close(ends[1]);
                char end;
                _exit(read(ends[0], &end, 1) == 0 ? 0 : 1);
            }
            children.push_back(child);
        }
    });
    host_.registered();
    forking.join();
    root_.endServers(SIGKILL);
    EXPECT_EQ(host_.command(host_.registered(), "ping", "next").bytes, "next");
    for (const int end : ends)
        close(end);
    for (const pid_t child : children)
        waitpid(child, nullptr, 0);
}

}  // namespace
}  // namespace dovrel::test

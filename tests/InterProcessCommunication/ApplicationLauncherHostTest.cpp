// A launch must not disturb its host: its children, their signal, its exit functions, its folder and streams.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "tests/InterProcessCommunication/ApplicationLauncherFixture.h"
#include "tests/support/SignalAction.h"

namespace dovrel {
namespace {

std::atomic<int> childSignals{0};

void countChildSignal(int) {
    ++childSignals;
}

// In shared memory, so that a forked copy of this process would count as well.
std::atomic<int>* exitFunctionCalls = nullptr;

void countExitFunctionCall() {
    ++*exitFunctionCalls;
}

// Waits for every child of this process, as some hosts do.
class Reaper {
  public:
    Reaper() : thread_([this] { reap(); }) {}
    ~Reaper() {
        isEnding_ = true;
        thread_.join();
    }
    Reaper(const Reaper&) = delete;
    Reaper& operator=(const Reaper&) = delete;

    int reaped() const { return reaped_; }

  private:
    void reap() {
        while (!isEnding_) {
            if (waitpid(-1, nullptr, WNOHANG) > 0) ++reaped_;
            std::this_thread::yield();
        }
    }

    std::atomic<bool> isEnding_{false};
    std::atomic<int> reaped_{0};
    std::thread thread_;
};

class ApplicationLauncherHostTest : public test::ApplicationLauncherFixture {};

TEST_F(ApplicationLauncherHostTest, ToolThatCannotBeRun_RunsNoExitFunctionOfTheHost) {
    void* const memory =
        mmap(nullptr, sizeof *exitFunctionCalls, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    exitFunctionCalls = new (memory) std::atomic<int>(0);
    ASSERT_EQ(std::atexit(&countExitFunctionCall), 0);
    run(writeTool("script", "#!/no/such/interpreter\n"), nullptr);
    run(folder.path(), nullptr);
    EXPECT_EQ(*exitFunctionCalls, 0);
}

TEST_F(ApplicationLauncherHostTest, HostThatHandlesTheEndsOfItsChildren_NoticesNothing) {
    const test::SignalAction handled(SIGCHLD, &countChildSignal);
    EXPECT_EQ(runShell("exit 3"), 3);
    EXPECT_EQ(run("/no/such/tool", nullptr), -1);
    EXPECT_EQ(run(writeTool("script", "#!/no/such/interpreter\n"), nullptr), -1);
    EXPECT_EQ(childSignals, 0);
    EXPECT_EQ(waitpid(-1, nullptr, __WALL), -1);
    EXPECT_EQ(errno, ECHILD) << "no zombie either";
}

TEST_F(ApplicationLauncherHostTest, HostsActionForTheEndsOfItsChildren_StaysAsItWas) {
    const test::SignalAction handled(SIGCHLD, &countChildSignal);
    EXPECT_EQ(runShell("exit 3"), 3);
    struct sigaction action = {};
    ASSERT_EQ(sigaction(SIGCHLD, nullptr, &action), 0);
    EXPECT_EQ(action.sa_handler, &countChildSignal);
}

TEST_F(ApplicationLauncherHostTest, HostThatIgnoresTheEndsOfItsChildren_ReceivesTheStatus) {
    const test::SignalAction ignored(SIGCHLD, SIG_IGN);
    EXPECT_EQ(runShell("exit 3"), 3);
    EXPECT_EQ(run("/bin/true", nullptr), 0);
    EXPECT_EQ(run("/no/such/tool", nullptr), -1);
}

TEST_F(ApplicationLauncherHostTest, HostThatWaitsForEveryChild_ReceivesTheStatusAndNoChild) {
    const Reaper reaper;
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(runShell("exit 3"), 3);
    EXPECT_EQ(reaper.reaped(), 0);
}

TEST_F(ApplicationLauncherHostTest, Tool_HasTheHostsFolderAndItsEnvironmentAsTheyAreNow) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    setenv("DOVREL_TEST_VARIABLE", "set since the start", 1);
    EXPECT_EQ(runShell("echo \"$DOVREL_TEST_VARIABLE\" > variable"), 0);
    unsetenv("DOVREL_TEST_VARIABLE");
    std::filesystem::current_path(before);
    EXPECT_EQ(folder.read("variable"), "set since the start\n");
}

TEST_F(ApplicationLauncherHostTest, ToolOfAHostWithoutStandardStreams_HasThem) {
    const std::string report = folder.path("report");
    const pid_t host = fork();
    if (host == 0) {
        for (const int descriptor : {0, 1, 2})
            close(descriptor);
        const std::vector<std::string> arguments = {
            "-c", "echo x && echo y >&2 && readlink /proc/$$/fd/0 > '" + report + "'"};
        _exit(launcher.RunTask("/bin/sh", &arguments));
    }
    int status = -1;
    ASSERT_EQ(waitpid(host, &status, 0), host);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(folder.read("report"), "/dev/null\n");
}

}  // namespace
}  // namespace dovrel

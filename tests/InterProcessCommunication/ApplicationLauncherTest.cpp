#include "InterProcessCommunication/ApplicationLauncher.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <type_traits>

#include "tests/InterProcessCommunication/ApplicationLauncherFixture.h"
#include "tests/support/WaitUntil.h"

namespace dovrel {
namespace {

using Arguments = std::vector<std::string>;

static_assert(std::has_virtual_destructor_v<ApplicationLauncher> &&
              sizeof(ApplicationLauncher) == sizeof(void*));

class ApplicationLauncherTest : public test::ApplicationLauncherFixture {};

TEST_F(ApplicationLauncherTest, EmptyCommand_IsMinus1WithoutStartingOrLoggingAnything) {
    const Arguments arguments = {"argument"};
    // If the launcher tried to start an empty path, it would log the failure, as for any missing tool.
    EXPECT_EQ(run("", nullptr), -1);
    EXPECT_EQ(log, "");
    EXPECT_EQ(run("", &arguments), -1);
    EXPECT_EQ(log, "");
}

TEST_F(ApplicationLauncherTest, ToolThatExitsWithStatus3_Yields3) {
    EXPECT_EQ(runShell("exit 3"), 3);
    EXPECT_EQ(log, "");
}

TEST_F(ApplicationLauncherTest, ToolThatSucceeds_Yields0) {
    EXPECT_EQ(run("/bin/true", nullptr), 0);
    const Arguments none;
    EXPECT_EQ(run("/bin/true", &none), 0);
}

TEST_F(ApplicationLauncherTest, Arguments_ReachTheToolAsTheyAre) {
    const Arguments arguments = {"-c",
                                 "printf '%s|' \"$@\" > \"$0\"",
                                 folder.path("arguments"),
                                 "",
                                 "two words",
                                 "d\xC3\xBC"
                                 "r"};
    EXPECT_EQ(run("/bin/sh", &arguments), 0);
    EXPECT_EQ(folder.read("arguments"),
              "|two words|d\xC3\xBC"
              "r|");
}

TEST_F(ApplicationLauncherTest, RunTask_ReturnsOnlyWhenTheToolHasExited) {
    EXPECT_EQ(runShell("sleep 0.3; echo done > '" + folder.path("done") + "'"), 0);
    EXPECT_EQ(folder.read("done"), "done\n");
}

TEST_F(ApplicationLauncherTest, OutputOfTheTool_IsNotSeen) {
    EXPECT_EQ(runShell("echo to the output; echo to the error >&2"), 0);
    EXPECT_EQ(output, "");
    EXPECT_EQ(log, "");
}

TEST_F(ApplicationLauncherTest, ToolThatDoesNotExist_IsMinus1AndLogged) {
    const Arguments arguments = {"first", "second"};
    EXPECT_EQ(run("/no/such/tool", &arguments), -1);
    EXPECT_NE(
        log.find(
            "Task execution failed! \n\n command: \"/no/such/tool\" \n\n arguments: \"(first, second)\""),
        std::string::npos)
        << log;
}

TEST_F(ApplicationLauncherTest, ToolThatDoesNotExistWithoutArguments_IsLoggedWithoutArguments) {
    EXPECT_EQ(run("/no/such/tool", nullptr), -1);
    EXPECT_NE(log.find("Task execution failed! \n\n command: \"/no/such/tool\" \n\n arguments: \"(null)\""),
              std::string::npos)
        << log;
}

TEST_F(ApplicationLauncherTest, FileThatIsNotATool_IsMinus1) {
    folder.write("text", "just a text");
    EXPECT_EQ(run(folder.path("text"), nullptr), -1);
}

TEST_F(ApplicationLauncherTest, ScriptWithoutItsInterpreter_IsMinus1AndLogged) {
    expectNotRun(writeTool("script", "#!/no/such/interpreter\n"));
}

TEST_F(ApplicationLauncherTest, DamagedProgram_IsMinus1AndLogged) {
    expectNotRun(writeTool("garbage",
                           "\x7F"
                           "ELF and then none of it"));
    std::ifstream whole("/bin/true", std::ios::binary);
    std::string start(100, '\0');
    ASSERT_TRUE(whole.read(start.data(), static_cast<std::streamsize>(start.size())));
    expectNotRun(writeTool("cut", start));
    expectNotRun(writeTool("empty", ""));
}

TEST_F(ApplicationLauncherTest, Folder_IsMinus1AndLogged) {
    expectNotRun(folder.path());
}

TEST_F(ApplicationLauncherTest, ToolThatASignalEnds_YieldsTheSignalsNumber) {
    EXPECT_EQ(runShell("kill -TERM $$"), SIGTERM);
    EXPECT_EQ(runShell("kill -KILL $$"), SIGKILL);
    EXPECT_EQ(log, "");
}

TEST_F(ApplicationLauncherTest, ToolThatFillsBothPipes_Ends) {
    constexpr char kScript[] = "head -c 65536 /dev/zero; head -c 65536 /dev/zero >&2; exit 4";
    EXPECT_EQ(runShell(kScript), 4);
}

TEST_F(ApplicationLauncherTest, ToolThatWritesMoreThanAPipeHolds_WaitsAndIsNotKilled) {
    const std::string progress = folder.path("progress");
    const std::string script =
        "echo $$ > '" + progress + "'; head -c 65536 /dev/zero; echo filled >> '" + progress + "'; echo more";
    auto status = std::async(std::launch::async, [&] {
        const Arguments arguments = {"-c", script};
        return launcher.RunTask("/bin/sh", &arguments);
    });
    pid_t tool = 0;
    const auto isFull = [&] {
        std::ifstream file(progress);
        std::string word;
        return (file >> tool >> word) && word == "filled";
    };
    ASSERT_TRUE(test::waitUntil(isFull));
    // If nothing blocked the tool, it would end at once: it only has to write one line.
    const auto sleeps = [&] {
        std::ifstream file("/proc/" + std::to_string(tool) + "/stat");
        std::string number, name, state;
        return (file >> number >> name >> state) && state == "S";
    };
    EXPECT_TRUE(test::waitUntil(sleeps));
    EXPECT_EQ(kill(tool, SIGTERM), 0);
    EXPECT_EQ(status.get(), SIGTERM);
}

TEST_F(ApplicationLauncherTest, ArgumentThatIsNotText_IsMinus1) {
    const Arguments arguments = {"valid", "\xFF\xFE"};
    EXPECT_EQ(run("/bin/true", &arguments), -1);
    EXPECT_NE(log.find("Task execution failed!"), std::string::npos) << log;
}

TEST_F(ApplicationLauncherTest, CommandThatIsNotText_IsMinus1) {
    EXPECT_EQ(run("/bin/tr\xFFue", nullptr), -1);
}

TEST_F(ApplicationLauncherTest, Tasks_LeaveNoDescriptorOpen) {
    ASSERT_EQ(run("/bin/true", nullptr), 0);
    const auto openDescriptors = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                             std::filesystem::directory_iterator());
    };
    const auto before = openDescriptors();
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(run("/bin/true", nullptr), 0);
        EXPECT_EQ(run("/no/such/tool", nullptr), -1);
    }
    EXPECT_EQ(openDescriptors(), before);
}

}  // namespace
}  // namespace dovrel

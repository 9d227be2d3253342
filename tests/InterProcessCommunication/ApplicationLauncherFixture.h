// Shared by the launcher's tests: a folder for tools, and the output of a run on the standard streams.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "InterProcessCommunication/ApplicationLauncher.h"
#include "tests/support/TemporaryFolder.h"

namespace dovrel::test {

class ApplicationLauncherFixture : public testing::Test {
  protected:
    ApplicationLauncherFixture() { setenv("HOME", folder.path().c_str(), 1); }

    // Writes an executable file and returns its path.
    std::string writeTool(const std::string& name, const std::string& content) const {
        folder.write(name, content);
        chmod(folder.path(name).c_str(), 0755);
        return folder.path(name);
    }

    void expectNotRun(const std::string& command) {
        EXPECT_EQ(run(command, nullptr), -1) << command;
        EXPECT_NE(log.find("Task execution failed! \n\n command: \"" + command + "\""), std::string::npos)
            << log;
    }

    int run(const std::string& command, const std::vector<std::string>* arguments) {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const int status = launcher.RunTask(command, arguments);
        log = testing::internal::GetCapturedStderr();
        output = testing::internal::GetCapturedStdout();
        return status;
    }

    int runShell(const std::string& script) {
        const std::vector<std::string> arguments = {"-c", script};
        return run("/bin/sh", &arguments);
    }

    TemporaryFolder folder;
    ApplicationLauncher launcher;
    std::string log;
    std::string output;
};

}  // namespace dovrel::test

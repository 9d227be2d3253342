// Starts programs with ChildProcess. At the end of a test none of them may be left.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cerrno>
#include <string>
#include <vector>

#include "ProgramsFixture.h"
#include "portability/processes/ChildProcess.h"
#include "portability/processes/DetachedProcess.h"
#include "portability/processes/PreparedProgram.h"
#include "tests/support/WaitUntil.h"

class ChildProcessFixture : public ProgramsFixture {
  protected:
    ~ChildProcessFixture() override {
        EXPECT_TRUE(dovrel::test::waitUntil(&hasNoChild)) << "a process of the test is left";
    }

    // Returns true if this process has no children, not even ended ones. It does not reap any.
    static bool hasNoChild() {
        siginfo_t info;
        return waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT | __WALL) == -1 && errno == ECHILD;
    }

    /// Returns 0 or an error number, as ChildProcess::start does.
    static int start(portability::ChildProcess& child, const std::string& program,
                     const std::vector<std::string>& arguments = {},
                     const std::vector<int>& descriptors = {0, 1, 2}) {
        std::vector<std::string> all = {program};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return child.start({program, all, portability::environmentWithout(std::string()), descriptors});
    }

    static int startShell(portability::ChildProcess& child, const std::string& script) {
        return start(child, "/bin/sh", {"-c", script});
    }

    /// Waits for the end of the child and returns its status as waitpid() does.
    static int waitForStatus(const portability::ChildProcess& child) {
        EXPECT_TRUE(dovrel::test::waitUntil([&child] { return !child.isRunning(); }));
        return child.waitStatus();
    }
};

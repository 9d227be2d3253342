// A program that only sleeps. It can have any name.
#pragma once

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/support/WaitUntil.h"

namespace dovrel::test {

class Sleeper {
  public:
    /// Runs a copy of "sleep" at the path `program` until the object is destroyed.
    explicit Sleeper(const std::string& program) {
        std::filesystem::create_directories(std::filesystem::path(program).parent_path());
        std::filesystem::copy_file("/bin/sleep", program);
        process_ = fork();
        if (process_ == 0) {
            execl(program.c_str(), program.c_str(), "600", static_cast<char*>(nullptr));
            _exit(127);
        }
        EXPECT_TRUE(waitUntil([&] {
            std::error_code failed;
            return std::filesystem::read_symlink("/proc/" + std::to_string(process_) + "/exe", failed) ==
                   program;
        }));
    }
    Sleeper(const Sleeper&) = delete;
    Sleeper& operator=(const Sleeper&) = delete;
    ~Sleeper() {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }

  private:
    pid_t process_;
};

}  // namespace dovrel::test

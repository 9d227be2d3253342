// An application at the other end: this test program once more, in a bundle of its own and in a process of
// its own.
#pragma once

#include <sys/types.h>

#include <string>

#include "tests/portability/support/TemporaryEnvironment.h"

class TestApplication {
  public:
    /// Makes the bundle, whose creator signature has four characters, and starts nothing.
    TestApplication(const TemporaryEnvironment& environment, const std::string& signature);
    TestApplication(const TestApplication&) = delete;
    TestApplication& operator=(const TestApplication&) = delete;

    /// Kills the process if it still runs.
    ~TestApplication();

    /// Starts the process and waits until events reach it; false after a generous time.
    bool start();

    /// Starts the process and does not wait.
    void launch();

    /// Waits until events reach it; false after a generous time.
    bool waitUntilReachable() const;

    /// Waits until the process has ended. Its exit status; -1 when a signal has ended it, -2 after a generous
    /// time.
    int waitForEnd();

    void kill();
    pid_t process() const { return process_; }

    /// Lets one handler of kHold answer.
    void letGo() const;

    /// The next byte that the application reports; -1 after a generous time.
    int nextReport() const;

  private:
    std::string signature_;
    std::string executable_;
    pid_t process_ = -1;
    int holding_[2];
    int reports_[2];
};

/// Where this test program lies; to be set by its main function.
std::string& testProgram();

/// The main function of the application: handlers, event loop, exit status 0.
int runTestApplication();

/// Whether this process is to be the application.
bool isTestApplication();

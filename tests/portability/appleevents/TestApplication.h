// An application that receives events: this test program again, in its own bundle and its own process.
#pragma once

#include <sys/types.h>

#include <string>

#include "tests/support/TemporaryEnvironment.h"

class TestApplication {
  public:
    /// Creates the bundle with this creator signature (four characters); does not start a process.
    TestApplication(const TemporaryEnvironment& environment, const std::string& signature);
    TestApplication(const TestApplication&) = delete;
    TestApplication& operator=(const TestApplication&) = delete;

    /// Kills the process if it still runs.
    ~TestApplication();

    /// Starts the process and waits until it receives events; returns false after a generous time-out.
    bool start();

    /// Starts the process and does not wait.
    void launch();

    /// Waits until the process receives events; returns false after a generous time-out.
    bool waitUntilReachable() const;

    /// Waits until the process has ended. Returns its exit status; -1 if a signal ended
    /// it, -2 after a generous time-out.
    int waitForEnd();

    void kill();
    pid_t process() const { return process_; }

    /// Lets one handler of kHold reply.
    void letGo() const;

    /// Returns the next byte that the application reports; -1 after a generous time-out.
    int nextReport() const;

  private:
    std::string signature_;
    std::string executable_;
    pid_t process_ = -1;
    int holding_[2];
    int reports_[2];
};

/// The path of this test program. Its main function must set it.
std::string& testProgram();

/// The main function of the application: installs handlers, runs the event loop, returns exit status 0.
int runTestApplication();

/// Returns true if this process was started as the application.
bool isTestApplication();

// Fixture for alerts in hosts of every kind (alertHostMain.cpp), on a desktop and with the real server, which
// replies to the host's call with an error.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/endtoend/EndToEnd.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Desktop.h"
#include "tests/support/FakeAlertHelper.h"

namespace dovrel::test {

class AlertHosts : public testing::Test {
  protected:
    AlertHosts();

    /// Fails the test if a helper still runs, or if two alerts were open at the same time.
    ~AlertHosts() override;

    /// Starts a host and waits until it is about to make its call.
    void start(const std::vector<std::string>& mainAndHabits);

    /// Expects that the call fails, that the host's state is as before, and that the host ends by itself.
    void expectFailedCallAndEnd();

    /// Presses the button of the only alert, then expects the same as expectFailedCallAndEnd().
    void expectAlertThatIsAnswered();

    /// Expects the only alert in the system log: it was not shown, or the user did not answer it.
    void expectLogged() const;

    /// Returns the path of the helper. The file is a hard link to the built
    /// one, so tests must not write to it.
    std::string helper() const { return root_.library() + "/Contents/MacOS/dovrel-alert"; }
    void removeHelper() const;
    void useFakeHelper(const std::vector<std::string>& commands) const;

    /// Returns the running helpers of this test's root.
    std::vector<pid_t> helpers() const;
    void signalHelper(int signal) const;

    /// Waits until there is neither an alert window nor a helper; returns false if that takes too long.
    bool hasDesktopWithoutAlerts() const;

    std::string systemLog() const { return readFile(root_.path() + "/system.log"); }

    TestRoot root_;
    Desktop desktop_;
    FakeAlertHelper fake_;
    std::unique_ptr<ChildProcess> host_;
};

}  // namespace dovrel::test

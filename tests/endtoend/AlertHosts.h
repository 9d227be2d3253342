// Fixture for alerts in hosts of every kind (alertHostMain.cpp), on a desktop and with the real server, whose
// answer to the host's call is an error.
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

    /// Fails the test if a helper still runs, or if two alerts were seen at once.
    ~AlertHosts() override;

    /// Starts a host and waits until it is about to make its call.
    void start(const std::vector<std::string>& mainAndHabits);

    /// The call fails, the host's state is as before, and the host ends by itself.
    void expectFailedCallAndEnd();

    /// The same after a press on the button of the one alert.
    void expectAlertThatIsAnswered();

    /// The one alert was not shown, or not answered, and is in the system log.
    void expectLogged() const;

    /// The path of the helper. The file is another name of the built one, so it is never written to.
    std::string helper() const { return root_.library() + "/Contents/MacOS/dovrel-alert"; }
    void removeHelper() const;
    void useFakeHelper(const std::vector<std::string>& commands) const;

    /// The running helpers of this test's root.
    std::vector<pid_t> helpers() const;
    void signalHelper(int signal) const;

    /// Waits until there is neither a window nor a helper.
    bool hasDesktopWithoutAlerts() const;

    std::string systemLog() const { return contentOf(root_.path() + "/system.log"); }

    TestRoot root_;
    Desktop desktop_;
    FakeAlertHelper fake_;
    std::unique_ptr<ChildProcess> host_;
};

}  // namespace dovrel::test

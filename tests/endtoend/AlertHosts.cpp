#include "tests/endtoend/AlertHosts.h"

#include <signal.h>

#include <filesystem>
#include <iostream>

#include "tests/support/RootProcesses.h"

namespace dovrel::test {

namespace fs = std::filesystem;

AlertHosts::AlertHosts() {
    root_.configure(refusal("execute command", 28, "The lid is open."));
}

AlertHosts::~AlertHosts() {
    host_.reset();
    EXPECT_TRUE(waitUntil([this] { return helpers().empty(); })) << "a helper still runs";
    EXPECT_LE(desktop_.mostAlerts(), 1u) << "two alerts at once";
    if (HasFailure()) std::cerr << "The host's system log:\n" << systemLog() << std::endl;
}

void AlertHosts::start(const std::vector<std::string>& mainAndHabits) {
    std::vector<std::string> command = {ALERT_HOST, root_.library()};
    command.insert(command.end(), mainAndHabits.begin(), mainAndHabits.end());
    host_ = std::make_unique<ChildProcess>(command, root_.path() + "/system.log");
    EXPECT_EQ(host_->readLine(), "ready");
}

void AlertHosts::expectFailedCallAndEnd() {
    EXPECT_EQ(host_->readLine(), "status 80000008");
    EXPECT_EQ(host_->readLine(), "end");
    EXPECT_EQ(host_->wait(), 0);
}

void AlertHosts::expectAlertThatIsAnswered() {
    EXPECT_TRUE(desktop_.pressKey("Return"));
    expectFailedCallAndEnd();
    EXPECT_EQ(desktop_.mostAlerts(), 1u);
}

void AlertHosts::expectLogged() const {
    EXPECT_EQ(countOccurrences(systemLog(), "No Error dialogue shown"), 1u) << systemLog();
    EXPECT_EQ(countOccurrences(systemLog(), "The lid is open."), 1u) << systemLog();
}

void AlertHosts::removeHelper() const {
    EXPECT_TRUE(fs::remove(helper()));
}

void AlertHosts::useFakeHelper(const std::vector<std::string>& commands) const {
    removeHelper();
    fs::create_symlink(FAKE_ALERT_HELPER, helper());
    fake_.follow(commands);
}

std::vector<pid_t> AlertHosts::helpers() const {
    return findProcesses(root_.path(), "dovrel-alert");
}

void AlertHosts::signalHelper(int signal) const {
    const std::vector<pid_t> running = helpers();
    ASSERT_EQ(running.size(), 1u);
    EXPECT_EQ(kill(running.front(), signal), 0);
}

bool AlertHosts::hasDesktopWithoutAlerts() const {
    return waitUntil([this] { return desktop_.alerts().empty() && helpers().empty(); });
}

}  // namespace dovrel::test

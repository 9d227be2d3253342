// Fixture for alerts in real windows: a desktop, a system root with captions, and a host that shows alerts.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/Desktop.h"
#include "tests/support/TemporaryFolder.h"

namespace dovrel::test {

class AlertTest : public testing::Test {
  protected:
    explicit AlertTest(const AlertLook& look = helperAlerts());
    ~AlertTest() override;

    /// Starts the host, or another program, with the arguments. Its system log goes to a file.
    void start(const std::vector<std::string>& arguments);
    void startProgram(const std::vector<std::string>& command);

    /// Clicks a button of the alert that is open, or waits for one. Returns
    /// the next line that the host writes.
    std::string lineAfterClick(int fromRight);
    std::string lineAfterKey(const std::string& key);

    /// Returns what the host has written to the system log so far.
    std::string log() const { return root_.read("log"); }

    TemporaryFolder root_;
    Desktop desktop_;
    std::unique_ptr<ChildProcess> host_;
};

}  // namespace dovrel::test

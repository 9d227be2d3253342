// Fixture for alerts in real windows: a desktop, a system root with captions in it, and a host that shows
// alerts.
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

    /// Starts the host with the arguments, or another program; its system log goes to a file.
    void start(const std::vector<std::string>& arguments);
    void startProgram(const std::vector<std::string>& command);

    // Answers the alert that is open, or comes, and returns the next line that the host tells.
    std::string lineAfterClick(int fromRight);
    std::string lineAfterKey(const std::string& key);

    /// The system log of the host so far.
    std::string log() const { return root_.read("log"); }

    TemporaryFolder root_;
    Desktop desktop_;
    std::unique_ptr<ChildProcess> host_;
};

}  // namespace dovrel::test

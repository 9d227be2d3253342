// Fixture for tests that use the alert helper's real window with mouse and keyboard.
#pragma once

#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>

#include "portability/alerts/helper/ExitCode.h"
#include "tests/portability/alerts/HelperProcess.h"
#include "tests/portability/alerts/HelperScreen.h"
#include "tests/portability/alerts/HelperTest.h"

namespace alerthelper::test {

using portability::AlertRequest;

// The messages of the helper.
inline const std::string kShown = R"({"event":"shown"})";
inline const std::string kHelp = R"({"event":"help"})";

inline std::string pressed(size_t button) {
    return R"({"button":)" + std::to_string(button) + R"(,"event":"pressed"})";
}

inline std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

class HelperWindowTest : public HelperTest {
  protected:
    void TearDown() override {
        helper_.reset();
        if (writesNothing_) {
            EXPECT_EQ(readFile(folder_.path("log")), "");
        }
    }

    void useScreen(const std::string& size, HelperScreen::Manager manager = HelperScreen::Manager::openbox) {
        screen_.emplace(size, manager);
    }

    void start(const AlertRequest& request) {
        if (!screen_) screen_.emplace();
        helper_ = std::make_unique<HelperProcess>(folder_.path("log"));
        helper_->send(request);
    }

    /// Starts the helper and waits for its window.
    std::string show(const AlertRequest& request) {
        start(request);
        EXPECT_EQ(helper_->readLine(), kShown);
        const std::string window = screen_->waitForWindow();
        EXPECT_NE(window, "");
        return window;
    }

    /// Presses the key and returns the helper's last message.
    std::string lineAfterKey(const AlertRequest& request, const std::string& key) {
        show(request);
        HelperScreen::pressKey(key);
        return lastLine();
    }

    std::string lastLine() {
        const std::string line = helper_->readLine();
        EXPECT_EQ(helper_->readLine(), "");
        EXPECT_EQ(helper_->wait(), kFinished);
        EXPECT_TRUE(HelperScreen::windowGoes());
        return line;
    }

    void expectEnd(int code) {
        EXPECT_EQ(helper_->readLine(), "");
        EXPECT_EQ(helper_->wait(), code);
    }

    std::optional<HelperScreen> screen_;
    std::unique_ptr<HelperProcess> helper_;
    bool writesNothing_ = true;
};

}  // namespace alerthelper::test

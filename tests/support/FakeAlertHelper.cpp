#include "tests/support/FakeAlertHelper.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/support/WaitUntil.h"

namespace dovrel::test {

std::string pressedEvent(int button) {
    return "send {\"event\":\"pressed\",\"button\":" + std::to_string(button) + "}";
}

void FakeAlertHelper::follow(const std::vector<std::string>& commands) const {
    std::filesystem::remove(folder_.path("notes"));
    std::string text;
    for (const std::string& command : commands)
        text += command + '\n';
    setenv("FAKE_ALERT", text.c_str(), 1);
    setenv("FAKE_ALERT_NOTES", folder_.path("notes").c_str(), 1);
    unsetenv("FAKE_ALERT_DEAF");
}

void FakeAlertHelper::beDeaf() {
    setenv("FAKE_ALERT_DEAF", "yes", 1);
}

std::vector<std::string> FakeAlertHelper::notes() const {
    std::ifstream file(folder_.path("notes"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

std::string FakeAlertHelper::note(const std::string& name) const {
    for (const std::string& line : notes()) {
        if (line.rfind(name + ' ', 0) == 0) return line.substr(name.size() + 1);
    }
    return "";
}

pid_t FakeAlertHelper::process() const {
    EXPECT_TRUE(waitUntil([this] { return !note("request").empty(); }));
    return std::stoi(note("process"));
}

bool FakeAlertHelper::sawItsEnd() const {
    return waitUntil([this] {
        const std::vector<std::string> lines = notes();
        return std::find(lines.begin(), lines.end(), "closed") != lines.end();
    });
}

}  // namespace dovrel::test

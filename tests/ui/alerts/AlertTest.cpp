#include "tests/ui/alerts/AlertTest.h"

#include <cstdlib>
#include <iostream>

#include "tests/support/RootProcesses.h"
#include "tests/support/WaitUntil.h"

namespace dovrel::test {

namespace {

constexpr char kTexts[] =
    "Library/Application Support/Tessilor/pos/Dovrel.bundle/Contents/Resources/"
    "MultiLanguageTexts.mls";

}  // namespace

AlertTest::AlertTest(const AlertLook& look) : desktop_(look) {
    setenv("POS_SYSTEM_ROOT", root_.path().c_str(), 1);
    setenv("HOME", root_.path("home").c_str(), 1);
    for (const char* variable : {"LANG", "LC_ALL", "LC_MESSAGES", "POS_ALERTS", "WAYLAND_DISPLAY"})
        unsetenv(variable);
    root_.write("home/.keep", "");
    root_.write("log", "");
    root_.write(
        kTexts,
        "//LANGUAGE\nSTR:English\n//GENERAL_BUTTON_OK\nSTR:Fine\n//GENERAL_BUTTON_CANCEL\nSTR:Never mind\n"
        "//GENERAL_BUTTON_RETRY\nSTR:Once more\n");
}

AlertTest::~AlertTest() {
    host_.reset();
    if (HasFailure()) std::cerr << "The host's system log:\n" << log() << std::endl;
    // When a host is killed while its leak checker runs, the checker's
    // process ends soon afterwards by itself.
    EXPECT_TRUE(waitUntil([this] { return findProcesses(root_.path()).empty(); })) << "a program still runs";
}

void AlertTest::start(const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {DOVREL_ALERT_HOST};
    command.insert(command.end(), arguments.begin(), arguments.end());
    startProgram(command);
}

void AlertTest::startProgram(const std::vector<std::string>& command) {
    host_ = std::make_unique<ChildProcess>(command, root_.path("log"));
}

std::string AlertTest::lineAfterClick(int fromRight) {
    EXPECT_TRUE(desktop_.clickButton(fromRight));
    return host_->readLine();
}

std::string AlertTest::lineAfterKey(const std::string& key) {
    EXPECT_TRUE(desktop_.pressKey(key));
    return host_->readLine();
}

}  // namespace dovrel::test

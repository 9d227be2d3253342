#include "tests/ui/AlertTest.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

#include "tests/support/WaitUntil.h"

namespace dovrel::test {

namespace {

constexpr char kTexts[] =
    "Library/Application Support/Tessilor/pos/Dovrel.bundle/Contents/Resources/"
    "MultiLanguageTexts.mls";

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

bool isNumber(const std::string& text) {
    return text.find_first_not_of("0123456789") == std::string::npos;
}

/// The names of the running programs that have the environment of that root.
std::string programsStartedIn(const std::string& root) {
    std::string names;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        if (!isNumber(entry.path().filename()) || entry.path().filename() == std::to_string(getpid()))
            continue;
        const std::string environment = contentOf(entry.path() / "environ");
        if (environment.find("POS_SYSTEM_ROOT=" + root) != std::string::npos)
            names += contentOf(entry.path() / "comm");
    }
    return names;
}

}  // namespace

AlertTest::AlertTest() {
    setenv("POS_SYSTEM_ROOT", root_.path().c_str(), 1);
    setenv("HOME", root_.path("home").c_str(), 1);
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"})
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
    // A host that is stopped while its leak checker works leaves that to end by itself, at once.
    waitUntil([this] { return programsStartedIn(root_.path()).empty(); });
    EXPECT_EQ(programsStartedIn(root_.path()), "");
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

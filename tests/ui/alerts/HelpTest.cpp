#include "tests/ui/alerts/HelpTest.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "tests/support/WaitUntil.h"

namespace dovrel::test {

namespace {

constexpr char kContents[] = "Applications/Halden Console.app/Contents/";
constexpr char kHelpFolder[] = "Resources/Helpsystem/";

std::string getFolder(const std::string& language) {
    return kHelpFolder + ("Helpsystem " + language) + " RC MacOSX";
}

std::string inContents(const std::string& name) {
    return kContents + name;
}

}  // namespace

HelpTest::HelpTest() {
    setenv("POS_SYSTEM_ROOT", root_.path().c_str(), 1);
    setenv("HOME", root_.path("home").c_str(), 1);
    setenv("PATH", (root_.path("bin") + ":/usr/bin:/bin").c_str(), 1);
    for (const char* variable : {"DISPLAY", "LANG", "LC_ALL", "LC_MESSAGES", "POS_ALERTS", "WAYLAND_DISPLAY"})
        unsetenv(variable);
    root_.write("home/.keep", "");
    // The script writes the note under another name first, so that the note is complete when it appears.
    root_.write("bin/xdg-open", "#!/bin/sh\nprintf '%s' \"$1\" > '" + root_.path("note") + "' && mv '" +
                                    root_.path("note") + "' '" + root_.path("opened") + "'\n");
    chmod(root_.path("bin/xdg-open").c_str(), 0755);
    root_.write(inContents("MacOS/.keep"), "");
    std::filesystem::copy_file(DOVREL_ALERT_HOST, program());
}

void HelpTest::setIdentifier(const std::string& identifier) const {
    root_.write(
        inContents("Info.plist"),
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
        "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n<plist version=\"1.0\"><dict>"
        "<key>CFBundleExecutable</key><string>alertHost</string><key>CFBundleIdentifier</key><string>" +
            identifier + "</string></dict></plist>\n");
}

void HelpTest::addHelp() const {
    const std::filesystem::path help = root_.path(inContents(kHelpFolder));
    std::filesystem::create_directories(help);
    std::filesystem::copy(DOVREL_HELP, help, std::filesystem::copy_options::recursive);
}

void HelpTest::removeHelp(const std::string& language) const {
    std::filesystem::remove_all(root_.path(inContents(getFolder(language))));
}

void HelpTest::removeStartPage(const std::string& language) const {
    EXPECT_TRUE(std::filesystem::remove(root_.path(inContents(getFolder(language) + "/index.html"))));
}

void HelpTest::setHelper(const std::string& helper) const {
    std::filesystem::create_symlink(helper, root_.path(inContents("MacOS/dovrel-alert")));
}

std::string HelpTest::program() const {
    return root_.path(inContents("MacOS/alertHost"));
}

std::string HelpTest::run(const std::string& mode, const std::string& locale) const {
    setenv("LC_ALL", locale.c_str(), 1);
    ChildProcess application({program(), mode});
    const std::string line = application.readLine();
    EXPECT_EQ(application.wait(), 0);
    return line;
}

std::string HelpTest::openedPage() const {
    if (!waitUntil([this] { return access(root_.path("opened").c_str(), F_OK) == 0; })) return "";
    const std::string page = root_.read("opened");
    unlink(root_.path("opened").c_str());
    const std::string application = root_.path(kContents);
    EXPECT_EQ(page.compare(0, application.size(), application), 0) << page;
    EXPECT_EQ(access(page.c_str(), R_OK), 0) << page;
    return page.substr(application.size());
}

bool HelpTest::openedNothing() const {
    return access(root_.path("opened").c_str(), F_OK) != 0;
}

}  // namespace dovrel::test

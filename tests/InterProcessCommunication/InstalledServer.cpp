#include "tests/InterProcessCommunication/InstalledServer.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/support/WaitUntil.h"

namespace dovrel::test {

namespace {

namespace fs = std::filesystem;

constexpr char kContents[] = "Library/Application Support/Tessilor/pos/Merrowd.app/Contents";

constexpr char kInfo[] =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
	<key>CFBundleExecutable</key>
	<string>Merrowd</string>
	<key>CFBundleIdentifier</key>
	<string>com.Tessilor.SmallServer</string>
	<key>CFBundleInfoDictionaryVersion</key>
	<string>6.0</string>
	<key>CFBundlePackageType</key>
	<string>APPL</string>
	<key>CFBundleSignature</key>
	<string>RBJT</string>
	<key>LSBackgroundOnly</key>
	<string>1</string>
</dict>
</plist>
)";

// A zombie (ended, but not yet waited for by its parent) does not count.
bool lives(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string stat;
    std::getline(file, stat);
    const size_t name = stat.rfind(')');
    return name != std::string::npos && stat.compare(name, 3, ") Z") != 0 &&
           stat.compare(name, 3, ") X") != 0;
}

bool waitForEnd(pid_t process) {
    return waitUntil([process] { return !lives(process); });
}

void end(pid_t process) {
    kill(process, SIGKILL);
    EXPECT_TRUE(waitForEnd(process)) << "a server process does not end";
}

}  // namespace

InstalledServer::InstalledServer() {
    setenv("POS_SYSTEM_ROOT", root_.path().c_str(), 1);
    setenv("XDG_RUNTIME_DIR", root_.path("run").c_str(), 1);
    setenv("HOME", root_.path("home").c_str(), 1);
    root_.write("home/.keep", "");
    root_.write("Library/Application Support/.keep", "");
    // The root has its own /tmp, so that its endpoints are not visible to other roots.
    for (const char* folder : {"run", "tmp"}) {
        fs::create_directory(root_.path(folder));
        fs::permissions(root_.path(folder), fs::perms::owner_all);
    }
}

InstalledServer::~InstalledServer() {
    for (const pid_t process : processes())
        if (lives(process)) end(process);
}

void InstalledServer::install(const std::string& behaviour) {
    root_.write(std::string(kContents) + "/Info.plist", kInfo);
    setBehaviour(behaviour);
    installProgram("Merrowd");
}

void InstalledServer::setBehaviour(const std::string& behaviour) const {
    root_.write(std::string(kContents) + "/behaviour", behaviour);
}

std::string InstalledServer::installProgram(const std::string& name) {
    const fs::path program = root_.path(std::string(kContents) + "/MacOS/" + name);
    fs::create_directories(program.parent_path());
    fs::copy_file(SMALL_SERVER, program);
    return program.string();
}

std::vector<std::string> InstalledServer::log() const {
    std::ifstream file(root_.path(std::string(kContents) + "/log"));
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

int InstalledServer::countInLog(const std::string& beginning) const {
    int count = 0;
    for (const std::string& line : log())
        count += line.rfind(beginning, 0) == 0 ? 1 : 0;
    return count;
}

std::vector<pid_t> InstalledServer::processes() const {
    std::vector<pid_t> processes;
    for (const std::string& line : log())
        if (line.rfind("start ", 0) == 0) processes.push_back(static_cast<pid_t>(std::stol(line.substr(6))));
    return processes;
}

void InstalledServer::killServer() const {
    end(processes().back());
}

bool InstalledServer::serverEnds() const {
    return waitForEnd(processes().back());
}

}  // namespace dovrel::test

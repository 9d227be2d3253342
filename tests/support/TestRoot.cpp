#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "tests/support/WaitUntil.h"

namespace dovrel::test {

namespace fs = std::filesystem;

namespace {

constexpr char kInstallFolder[] = "/Library/Application Support/Tessilor/pos/";
constexpr char kLogFile[] = "/Library/Logs/Tessilor/Merrowd.log";
constexpr char kReports[] = "/reports";

// Uses hard links, which are fast, or copies if the file system does not support hard links here.
void stageBundle(const fs::path& from, const fs::path& to) {
    if (!fs::exists(from))
        throw std::runtime_error(from.string() + " is not there; it has to be built first");
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(from)) {
        const fs::path target = to / fs::relative(entry.path(), from);
        if (entry.is_directory()) continue;
        fs::create_directories(target.parent_path());
        std::error_code failed;
        fs::create_hard_link(entry.path(), target, failed);
        if (failed) fs::copy_file(entry.path(), target);
    }
}

// Returns the executable of a process; "" if the process has ended or belongs to another user.
std::string readExecutable(const fs::path& process) {
    std::error_code failed;
    return fs::read_symlink(process / "exe", failed).string();
}

// Returns the options that the variable already has, followed by one more.
std::string withOption(const char* variable, const std::string& option) {
    const char* const old = getenv(variable);
    return old == nullptr || *old == '\0' ? option : std::string(old) + ":" + option;
}

}  // namespace

TestRoot::TestRoot() {
    setEnvironment();
    stage();
}

TestRoot::~TestRoot() {
    for (const pid_t server : servers())
        kill(server, SIGTERM);
    if (!waitUntil([this] { return servers().empty(); })) {
        ADD_FAILURE() << "a server did not end when told to";
        endServers(SIGKILL);
    }
    expectNoSanitizerReports();
}

std::string TestRoot::installFolder() const {
    return path() + kInstallFolder;
}
std::string TestRoot::library() const {
    return installFolder() + "Dovrel.bundle";
}
std::string TestRoot::server() const {
    return installFolder() + "Merrowd.app";
}
std::string TestRoot::serverExecutable() const {
    return server() + "/Contents/MacOS/Merrowd";
}

void TestRoot::stage() const {
    stageBundle(DOVREL_BUNDLE, library());
    const char* const otherServer = getenv("DOVREL_TEST_SERVER");
    stageBundle(otherServer == nullptr ? MERROWD_APP : otherServer, server());
    fs::create_directories(path() + "/Library/Logs");
}

void TestRoot::setEnvironment() {
    // The root has its own /tmp, so that its endpoints are not visible to other roots.
    for (const char* folder : {"/run", "/tmp", "/home", kReports}) {
        fs::create_directory(path() + folder);
        fs::permissions(path() + folder, fs::perms::owner_all);
    }
    variables_.emplace_back("POS_SYSTEM_ROOT", path().c_str());
    variables_.emplace_back("XDG_RUNTIME_DIR", folder_.path("run").c_str());
    variables_.emplace_back("HOME", folder_.path("home").c_str());
    variables_.emplace_back("LC_ALL", "C.UTF-8");
    for (const char* variable : {"DISPLAY", "POS_ALERTS", "WAYLAND_DISPLAY"})
        variables_.emplace_back(variable, nullptr);
    // A server has no standard error for the reports of a sanitizer, so they go to files. This does not
    // affect this process, which has already read its own options.
    const std::string reports = "log_path=" + path() + kReports + "/sanitizer";
    for (const char* options : {"ASAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS"})
        variables_.emplace_back(options, withOption(options, reports).c_str());
}

void TestRoot::expectNoSanitizerReports() const {
    for (const fs::directory_entry& report : fs::directory_iterator(path() + kReports)) {
        ADD_FAILURE() << readFile(report.path());
    }
}

void TestRoot::configure(const std::string& settings) const {
    std::ofstream file(installFolder() + "Merrowd.conf", std::ios::binary);
    file << settings;
    EXPECT_TRUE(file.flush().good());
}

void TestRoot::removeServer() const {
    fs::remove_all(server());
}

void TestRoot::makeServerUnexecutable() const {
    // Changes a copy, because the staged file may be a hard link to the built one.
    const std::string copy = serverExecutable() + ".copy";
    fs::copy_file(serverExecutable(), copy);
    fs::rename(copy, serverExecutable());
    fs::permissions(serverExecutable(), fs::perms::owner_read | fs::perms::owner_write);
}

std::vector<pid_t> TestRoot::servers() const {
    std::vector<pid_t> found;
    for (const fs::directory_entry& process : fs::directory_iterator("/proc")) {
        const std::string name = process.path().filename();
        if (name.find_first_not_of("0123456789") != std::string::npos) continue;
        const std::string executable = readExecutable(process.path());
        // Linux appends this if the file was deleted while the process runs.
        const bool isOurs =
            executable == serverExecutable() || executable == serverExecutable() + " (deleted)";
        if (isOurs) found.push_back(std::stoi(name));
    }
    return found;
}

std::vector<pid_t> TestRoot::waitForServers(size_t count) const {
    std::vector<pid_t> found;
    const bool there = waitUntil([&] {
        found = servers();
        return found.size() == count;
    });
    EXPECT_TRUE(there) << found.size() << " servers run, not " << count;
    return found;
}

void TestRoot::endServers(int signal) const {
    for (const pid_t server : servers())
        kill(server, signal);
    waitForServers(0);
}

std::string TestRoot::serverLog() const {
    return readFile(path() + kLogFile);
}

void TestRoot::waitForServerLog(const std::string& text) const {
    EXPECT_TRUE(waitUntil([&] { return serverLog().find(text) != std::string::npos; }))
        << "\"" << text << "\" did not get into the server's log:\n"
        << serverLog();
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

}  // namespace dovrel::test

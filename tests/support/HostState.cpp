#include "tests/support/HostState.h"

#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace dovrel::test {

namespace {

namespace fs = std::filesystem;

std::string readDisposition(int signal) {
    struct sigaction action = {};
    if (sigaction(signal, nullptr, &action) != 0) return "none";
    std::ostringstream text;
    text << reinterpret_cast<void*>(action.sa_handler) << ' ' << action.sa_flags;
    return text.str();
}

void addSignals(std::vector<std::string>& lines) {
    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    for (int signal = 1; signal < NSIG; ++signal) {
        lines.push_back("signal " + std::to_string(signal) + ": " + readDisposition(signal) +
                        (sigismember(&blocked, signal) == 1 ? " blocked" : ""));
    }
}

// The folder of descriptors itself is open while it is read.
bool isListOfDescriptors(const std::string& target) {
    return target == "/proc/" + std::to_string(getpid()) + "/fd";
}

void addDescriptors(std::vector<std::string>& lines) {
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        const std::string target = fs::read_symlink(entry.path(), gone);
        if (isListOfDescriptors(target)) continue;
        lines.push_back("descriptor " + entry.path().filename().string() + ": " + target);
    }
}

void addEnvironment(std::vector<std::string>& lines) {
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry)
        lines.push_back(std::string("environment ") + *entry);
}

void addLimits(std::vector<std::string>& lines) {
    for (int resource = 0; resource < static_cast<int>(RLIM_NLIMITS); ++resource) {
        rlimit limit = {};
        getrlimit(static_cast<__rlimit_resource>(resource), &limit);
        lines.push_back("limit " + std::to_string(resource) + ": " + std::to_string(limit.rlim_cur) + " of " +
                        std::to_string(limit.rlim_max));
    }
}

// Returns the process's locale for all categories, and whether this thread has its own locale.
std::string currentLocale() {
    const bool isOwn = uselocale(nullptr) != LC_GLOBAL_LOCALE;
    return std::setlocale(LC_ALL, nullptr) + std::string(isOwn ? ", another in this thread" : "");
}

mode_t currentMask() {
    const mode_t mask = umask(0);
    umask(mask);
    return mask;
}

// Adds a line for each child with its number and name. Does not reap a child that has ended.
void addChildren(std::vector<std::string>& lines) {
    for (const auto& entry : fs::directory_iterator("/proc")) {
        std::ifstream file(entry.path() / "stat");
        std::string stat;
        // "NUMBER (NAME) STATE PARENT ...": the name may contain any character.
        if (!std::getline(file, stat) || stat.rfind(')') == std::string::npos) continue;
        std::istringstream fields(stat.substr(stat.rfind(')') + 1));
        char state = 0;
        pid_t parent = 0;
        fields >> state >> parent;
        const char* const ended = state == 'Z' ? ", ended" : "";
        if (parent == getpid()) lines.push_back("child " + stat.substr(0, stat.rfind(')') + 1) + ended);
    }
}

std::vector<std::string> currentState() {
    std::vector<std::string> lines;
    addSignals(lines);
    addDescriptors(lines);
    addEnvironment(lines);
    addLimits(lines);
    lines.push_back("locale: " + currentLocale());
    lines.push_back("folder: " + fs::current_path().string());
    lines.push_back("mask: " + std::to_string(currentMask()));
    addChildren(lines);
    std::sort(lines.begin(), lines.end());
    return lines;
}

}  // namespace

HostState::HostState() : lines_(currentState()) {}

std::vector<std::string> HostState::changes() const {
    const std::vector<std::string> now = currentState();
    std::vector<std::string> gone;
    std::vector<std::string> added;
    std::set_difference(lines_.begin(), lines_.end(), now.begin(), now.end(), std::back_inserter(gone));
    std::set_difference(now.begin(), now.end(), lines_.begin(), lines_.end(), std::back_inserter(added));
    std::vector<std::string> all;
    for (const std::string& line : gone)
        all.push_back("was " + line);
    for (const std::string& line : added)
        all.push_back("is " + line);
    return all;
}

}  // namespace dovrel::test

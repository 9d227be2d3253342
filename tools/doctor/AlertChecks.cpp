#include "tools/doctor/AlertChecks.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tools/calls/LoadedLibrary.h"

extern char** environ;

namespace dovrel::tools {

namespace {

constexpr char kDisplay[] = "display";
constexpr char kHelper[] = "alert helper";
constexpr char kInstallAgain[] = "Install the library again, with the packages that it depends on.";

std::string readVariable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

// Runs the program with --version, without its output. Returns "", or the reason of the failure.
std::string tryToRun(const std::string& program) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    std::string name = program;
    char option[] = "--version";
    char* const arguments[] = {name.data(), option, nullptr};
    pid_t child = 0;
    const int error = posix_spawn(&child, program.c_str(), &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) return std::strerror(error);
    int status = 0;
    while (waitpid(child, &status, 0) < 0)
        if (errno != EINTR) return std::strerror(errno);
    const bool succeeded = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    return succeeded ? "" : "it does not start; run it in a terminal to see why";
}

void checkDisplay(CheckResults& results) {
    if (readVariable("POS_ALERTS") == "log")
        return results.addNote(kDisplay,
                               "POS_ALERTS=log: no alert is shown; failures go to the host's standard error");
    const std::string wayland = readVariable("WAYLAND_DISPLAY");
    const std::string display = wayland.empty() ? readVariable("DISPLAY") : wayland;
    if (!display.empty()) return results.addOk(kDisplay, display);
    results.addWarning(
        kDisplay,
        "DISPLAY and WAYLAND_DISPLAY are not set: no alert can be shown. Failures go to the host's "
        "standard error, and the user cannot choose Retry",
        "Run the host in a desktop session, or set the variable. For a service, POS_ALERTS=log says that "
        "this is intended.");
}

}  // namespace

void checkAlerts(CheckResults& results) {
    checkDisplay(results);
    const std::string folder = installedBundlePath() + "/Contents/MacOS/";
    for (const char* const file : {"dovrel-alert", "DovrelFoundation"}) {
        if (access((folder + file).c_str(), R_OK) == 0) continue;
        return results.addTrouble(
            kHelper, "no alert can be shown: " + folder + file + ": " + std::strerror(errno), kInstallAgain);
    }
    const std::string helper = folder + "dovrel-alert";
    const std::string reason = tryToRun(helper);
    if (reason.empty()) return results.addOk(kHelper, helper);
    results.addTrouble(kHelper, "no alert can be shown: " + helper + ": " + reason, kInstallAgain);
}

}  // namespace dovrel::tools

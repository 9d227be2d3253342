#include "tools/recordings/ChildCommand.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "tools/Subcommand.h"

extern char** environ;

namespace dovrel::tools {

namespace {

constexpr int kSignalled = 128;

/// Ignores the signals of the terminal while it exists; the command gets them.
class IgnoredSignals {
  public:
    IgnoredSignals() : interrupt_(signal(SIGINT, SIG_IGN)), quit_(signal(SIGQUIT, SIG_IGN)) {}
    IgnoredSignals(const IgnoredSignals&) = delete;
    IgnoredSignals& operator=(const IgnoredSignals&) = delete;
    ~IgnoredSignals() {
        signal(SIGINT, interrupt_);
        signal(SIGQUIT, quit_);
    }

    /// Returns the signals that were not ignored before. The command must not ignore them.
    sigset_t notIgnoredBefore() const {
        sigset_t signals;
        sigemptyset(&signals);
        if (interrupt_ != SIG_IGN) sigaddset(&signals, SIGINT);
        if (quit_ != SIG_IGN) sigaddset(&signals, SIGQUIT);
        return signals;
    }

  private:
    void (*const interrupt_)(int);
    void (*const quit_)(int);
};

pid_t start(const std::vector<std::string>& command, const sigset_t& defaultSignals) {
    std::vector<char*> arguments;
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setsigdefault(&attributes, &defaultSignals);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    pid_t child = 0;
    const int error = posix_spawnp(&child, arguments[0], nullptr, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    if (error != 0) throw ToolFailure("cannot run " + command[0] + ": " + std::strerror(error));
    return child;
}

}  // namespace

int runChildCommand(const std::vector<std::string>& command) {
    const IgnoredSignals ignored;
    const pid_t child = start(command, ignored.notIgnoredBefore());
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {
        if (errno != EINTR) throw ToolFailure("cannot wait for " + command[0] + ": " + std::strerror(errno));
    }
    return WIFSIGNALED(status) ? kSignalled + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace dovrel::tools

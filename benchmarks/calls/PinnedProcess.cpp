#include "PinnedProcess.h"

#include <sched.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <thread>

#include "UnixSockets.h"

namespace dovrel::benchmarks {

namespace {

constexpr auto kPatience = std::chrono::seconds(10);

[[noreturn]] void runAndExit(int processor, const std::function<void()>& work) {
    int status = EXIT_FAILURE;
    try {
        pinToProcessor(processor);
        work();
        status = EXIT_SUCCESS;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
    }
    std::fflush(nullptr);
    _exit(status);
}

}  // namespace

void pinToProcessor(int processor) {
    if (processor == kAnyProcessor) return;
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(static_cast<size_t>(processor), &set);
    if (sched_setaffinity(0, sizeof set, &set) != 0)
        throw systemError("processor " + std::to_string(processor));
}

PinnedProcess::PinnedProcess(int processor, const std::function<void()>& work) {
    const pid_t parent = getpid();
    std::fflush(nullptr);
    process_ = fork();
    if (process_ < 0) throw systemError("fork");
    if (process_ != 0) return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(EXIT_FAILURE);
    runAndExit(processor, work);
}

PinnedProcess::PinnedProcess(PinnedProcess&& other) noexcept
    : process_(other.process_), status_(other.status_) {
    other.process_ = 0;
}

PinnedProcess::~PinnedProcess() {
    if (!isRunning()) return;
    kill(process_, SIGTERM);
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (isRunning()) {
        if (std::chrono::steady_clock::now() > end) kill(process_, SIGKILL);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

bool PinnedProcess::isRunning() {
    return !collect(WNOHANG);
}

bool PinnedProcess::succeeds() {
    collect(0);
    return WIFEXITED(status_) && WEXITSTATUS(status_) == EXIT_SUCCESS;
}

// Returns whether the process has ended. Then its number may belong to another process.
bool PinnedProcess::collect(int flags) {
    if (process_ != 0 && waitpid(process_, &status_, flags) != 0) process_ = 0;
    return process_ == 0;
}

}  // namespace dovrel::benchmarks

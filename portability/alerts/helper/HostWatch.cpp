#include "portability/alerts/helper/HostWatch.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <iterator>

#include "portability/alerts/helper/ExitCode.h"

namespace alerthelper {
namespace {

using Clock = std::chrono::steady_clock;

// Returns a descriptor of the process, or -1, which poll ignores, if the kernel cannot watch processes. Ends
// this process if the other one has already exited.
int openProcess(pid_t process) {
    // Called with syscall() because the C library's header lacks extern "C" for pidfd_open.
    const auto descriptor = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
    if (descriptor < 0 && errno == ESRCH) _exit(kFinished);
    return descriptor;
}

// Starts a thread that blocks all signals, so that the window's thread receives them.
std::thread threadWithoutSignals(void (*function)(void*), void* argument) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    std::thread thread(function, argument);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return thread;
}

}  // namespace

HostWatch::HostWatch(int stream, pid_t host, std::chrono::milliseconds limitForShowing)
    : stream_(stream),
      host_(openProcess(host)),
      wakeUp_(eventfd(0, EFD_CLOEXEC)),
      endOfShowing_(Clock::now() + limitForShowing),
      thread_(threadWithoutSignals([](void* self) { static_cast<HostWatch*>(self)->run(); }, this)) {}

HostWatch::~HostWatch() {
    isStopped_ = true;
    wakeUp();
    thread_.join();
}

void HostWatch::windowIsShown() {
    isShown_ = true;
    wakeUp();
}

void HostWatch::wakeUp() const {
    const uint64_t one = 1;
    if (write(wakeUp_.get(), &one, sizeof one) < 0) _exit(kNotShown);
}

void HostWatch::run() {
    while (true) {
        pollfd watched[] = {{stream_, POLLIN, 0}, {host_.get(), POLLIN, 0}, {wakeUp_.get(), POLLIN, 0}};
        const int ready = poll(watched, std::size(watched), millisecondsLeft());
        if (isStopped_) return;
        if (ready == 0) _exit(kNotShown);
        if (watched[1].revents != 0) _exit(kFinished);
        if (watched[0].revents != 0) checkStream();
        uint64_t count = 0;
        if (watched[2].revents != 0 && read(wakeUp_.get(), &count, sizeof count) < 0) _exit(kNotShown);
    }
}

void HostWatch::checkStream() const {
    char byte = 0;
    const ssize_t count = recv(stream_, &byte, 1, MSG_DONTWAIT);
    if (count > 0) _exit(kBadMessage);
    if (count == 0 || (errno != EINTR && errno != EAGAIN)) _exit(kFinished);
}

int HostWatch::millisecondsLeft() const {
    if (isShown_) return -1;
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(endOfShowing_ - Clock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count() + 1, 0));
}

}  // namespace alerthelper

#include "tests/portability/alerts/HelperProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

#include "tests/support/WaitUntil.h"

namespace alerthelper::test {

namespace {

constexpr int kStream = 3;
constexpr int kLongestWait = 30000;

[[noreturn]] void become(int stream, const std::string& outputFile) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int output = open(outputFile.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    const int input = open("/dev/null", O_RDONLY);
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    // Another descriptor may have the number kStream, even the stream itself.
    // So the stream is duplicated first.
    const int copy = fcntl(stream, F_DUPFD, kStream + 1);
    dup2(copy, kStream);
    close(copy);
    execl(DOVREL_ALERT_HELPER, "dovrel-alert", nullptr);
    _exit(127);
}

}  // namespace

HelperProcess::HelperProcess(const std::string& outputFile) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) throw std::runtime_error("no socket");
    stream_.reset(ends[0]);
    const portability::FileDescriptor helpersEnd(ends[1]);
    process_ = fork();
    if (process_ == 0) become(helpersEnd.get(), outputFile);
}

HelperProcess::~HelperProcess() {
    if (process_ <= 0) return;
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
}

void HelperProcess::sendBytes(const std::string& bytes) const {
    size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count = ::send(stream_.get(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) return;
        sent += static_cast<size_t>(count);
    }
}

void HelperProcess::send(const portability::AlertRequest& request) const {
    sendBytes(portability::AlertMessages::compose(request));
}

bool HelperProcess::hasLine() const {
    pollfd ready = {stream_.get(), POLLIN, 0};
    return poll(&ready, 1, 0) > 0;
}

std::string HelperProcess::readLine() {
    std::string line;
    pollfd ready = {stream_.get(), POLLIN, 0};
    char character = 0;
    while (poll(&ready, 1, kLongestWait) > 0 && recv(stream_.get(), &character, 1, 0) == 1 &&
           character != '\n')
        line += character;
    return line;
}

int HelperProcess::wait() {
    int status = 0;
    if (!dovrel::test::waitUntil([&] { return waitpid(process_, &status, WNOHANG) == process_; })) return -1;
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace alerthelper::test

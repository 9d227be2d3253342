#include "tests/support/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

namespace dovrel::test {

namespace {

constexpr int kLongestWait = 60000;

[[noreturn]] void become(const std::vector<std::string>& arguments, int input, int output,
                         const std::string& errors) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::signal(SIGPIPE, SIG_DFL);
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    if (!errors.empty()) {
        const int file = open(errors.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
        dup2(file, STDERR_FILENO);
    }
    std::vector<char*> pointers;
    for (const std::string& argument : arguments)
        pointers.push_back(const_cast<char*>(argument.c_str()));
    pointers.push_back(nullptr);
    execvp(pointers[0], pointers.data());
    _exit(127);
}

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments, const std::string& errorFile) {
    // Without SIGPIPE, a write to a child that has ended only fails. The next read then notices the end.
    std::signal(SIGPIPE, SIG_IGN);
    int toChild[2];
    int fromChild[2];
    if (pipe2(toChild, O_CLOEXEC) != 0 || pipe2(fromChild, O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    process_ = fork();
    if (process_ == 0) become(arguments, toChild[0], fromChild[1], errorFile);
    close(toChild[0]);
    close(fromChild[1]);
    input_ = toChild[1];
    output_ = fromChild[0];
}

ChildProcess::~ChildProcess() {
    if (input_ >= 0) close(input_);
    close(output_);
    if (process_ <= 0) return;
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
}

bool ChildProcess::hasLine(int milliseconds) const {
    pollfd ready = {output_, POLLIN, 0};
    return poll(&ready, 1, milliseconds) > 0;
}

std::string ChildProcess::readLine() {
    std::string line;
    char character = 0;
    while (hasLine(kLongestWait) && read(output_, &character, 1) == 1 && character != '\n')
        line += character;
    return line;
}

void ChildProcess::writeLine(const std::string& line) {
    const std::string text = line + '\n';
    if (write(input_, text.data(), text.size()) < 0) throw std::runtime_error("the child does not read");
}

void ChildProcess::closeInput() {
    close(input_);
    input_ = -1;
}

void ChildProcess::signal(int number) const {
    if (process_ > 0) kill(process_, number);
}

int ChildProcess::wait() {
    int status = 0;
    waitpid(process_, &status, 0);
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string readOutput(const std::vector<std::string>& arguments) {
    ChildProcess child(arguments, "/dev/null");
    std::string output;
    for (std::string line = child.readLine(); !line.empty(); line = child.readLine())
        output += line + '\n';
    return child.wait() == 0 ? output : "";
}

}  // namespace dovrel::test

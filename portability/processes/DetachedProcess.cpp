#include "portability/processes/DetachedProcess.h"

#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "portability/processes/PreparedProgram.h"

namespace portability {
namespace {

constexpr std::size_t kMostInherited = 4;

// The go-between starts the program and ends. The program then has lost its parent, so it is
// not the host's child.
DOVREL_IN_NEW_PROCESS int runGoBetween(void* program) {
    static_cast<PreparedProgram*>(program)->start();
    systemCall(SYS_exit_group, 0);
    return 0;
}

int makeGoBetween(PreparedProgram& program) {
    const ProcessStack stack;
    void* const stackTop = stack.top();
    const SignalPause pause;
    const pid_t goBetween = makeProcess(&runGoBetween, stackTop, CLONE_VFORK, &program);
    if (goBetween < 0) {
        return errno;
    }
    awaitProcess(goBetween);
    return program.failure();
}

}  // namespace

int startDetached(const DetachedProcess& process) {
    if (process.descriptors.size() > kMostInherited) {
        return EINVAL;
    }
    std::vector<int> descriptors = {kNullDevice, kNullDevice, kNullDevice};
    descriptors.insert(descriptors.end(), process.descriptors.begin(), process.descriptors.end());
    PreparedProgram program(process.program, process.arguments, process.environment, descriptors);
    program.leaveFolderAndMask();
    program.leaveLimits();
    return makeGoBetween(program);
}

std::vector<std::string> environmentWithout(const std::string& variable) {
    const std::string removed = variable + '=';
    std::vector<std::string> entries;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        if (std::strncmp(*entry, removed.c_str(), removed.size()) != 0) {
            entries.emplace_back(*entry);
        }
    }
    return entries;
}

}  // namespace portability

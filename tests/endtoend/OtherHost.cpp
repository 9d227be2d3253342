#include "tests/endtoend/OtherHost.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace dovrel::test {

OtherHost::OtherHost(const std::string& library, const std::function<void()>& prepare,
                     const std::string& program) {
    int toHost[2];
    int fromHost[2];
    EXPECT_EQ(pipe(toHost), 0);
    EXPECT_EQ(pipe(fromHost), 0);
    process_ = fork();
    if (process_ == 0) {
        dup2(toHost[0], 0);
        dup2(fromHost[1], 1);
        for (int descriptor = 3; descriptor < 1024; ++descriptor)
            close(descriptor);
        if (prepare) prepare();
        execl(program.c_str(), program.c_str(), library.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    close(toHost[0]);
    close(fromHost[1]);
    to_ = toHost[1];
    from_ = fromHost[0];
    char ready = 0;
    EXPECT_EQ(read(from_, &ready, 1), 1) << "the other host does not start";
}

OtherHost::~OtherHost() {
    kill();
    close(to_);
    close(from_);
}

void OtherHost::tell(char word) {
    EXPECT_EQ(write(to_, &word, 1), 1);
}

void OtherHost::go() {
    tell('g');
}

void OtherHost::goAndStay() {
    tell('s');
}

bool OtherHost::isServed() {
    char answer = 0;
    return read(from_, &answer, 1) == 1 && answer == '1';
}

bool OtherHost::endsWell() {
    int status = -1;
    EXPECT_EQ(waitpid(process_, &status, 0), process_);
    process_ = -1;
    return status == 0;
}

void OtherHost::kill() {
    if (process_ < 0) return;
    ::kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = -1;
}

}  // namespace dovrel::test

// Contract tests of processes and their serial numbers.
#include <ApplicationServices/ApplicationServices.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>

namespace {

bool areEqual(const ProcessSerialNumber& first, const ProcessSerialNumber& second) {
    return std::memcmp(&first, &second, sizeof first) == 0;
}

// A process that does nothing until it is ended.
class Child {
  public:
    Child() : id_(fork()) {
        if (id_ == 0) {
            for (;;) {
                pause();
            }
        }
    }
    ~Child() { end(); }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    pid_t id() const { return id_; }

    void kill() {
        if (id_ <= 0) {
            return;
        }
        ::kill(id_, SIGKILL);
        siginfo_t ended;
        waitid(P_PID, static_cast<id_t>(id_), &ended, WEXITED | WNOWAIT);
    }

    void end() {
        if (id_ > 0) {
            ::kill(id_, SIGKILL);
            waitpid(id_, nullptr, 0);
            id_ = -1;
        }
    }

  private:
    pid_t id_;
};

}  // namespace

TEST(Processes, GetCurrentProcess_IsOneSerialNumberOfTheOwnProcessId) {
    ProcessSerialNumber first = {};
    ProcessSerialNumber second = {};
    ASSERT_EQ(GetCurrentProcess(&first), noErr);
    ASSERT_EQ(GetCurrentProcess(&second), noErr);
    EXPECT_TRUE(areEqual(first, second));
    EXPECT_FALSE(first.highLongOfPSN == 0 && first.lowLongOfPSN <= kCurrentProcess)
        << "that would be a special one";
    pid_t pid = -7;
    ASSERT_EQ(GetProcessPID(&first, &pid), noErr);
    EXPECT_EQ(pid, getpid());
}

TEST(Processes, GetProcessPID_OfTheCurrentProcessConstant_IsOnesOwnId) {
    const ProcessSerialNumber current = {0, kCurrentProcess};
    pid_t pid = -7;
    ASSERT_EQ(GetProcessPID(&current, &pid), noErr);
    EXPECT_EQ(pid, getpid());
}

TEST(Processes, GetProcessPID_UnknownSerialNumber_IsProcNotFoundAndLeavesTheId) {
    const ProcessSerialNumber none = {0, kNoProcess};
    ProcessSerialNumber other = {};
    ASSERT_EQ(GetCurrentProcess(&other), noErr);
    other.highLongOfPSN ^= 1;
    pid_t pid = -7;
    EXPECT_EQ(GetProcessPID(&none, &pid), procNotFound);
    EXPECT_EQ(GetProcessPID(&other, &pid), procNotFound);
    EXPECT_EQ(pid, -7);
}

TEST(Processes, GetProcessForPID_OfAnotherProcess_ReturnsASerialNumberOfIt) {
    const Child child;
    ProcessSerialNumber number = {};
    ASSERT_EQ(GetProcessForPID(child.id(), &number), noErr);
    pid_t pid = -7;
    ASSERT_EQ(GetProcessPID(&number, &pid), noErr);
    EXPECT_EQ(pid, child.id());
    ProcessSerialNumber own = {};
    ASSERT_EQ(GetCurrentProcess(&own), noErr);
    EXPECT_FALSE(areEqual(number, own));
}

TEST(Processes, SerialNumber_OfAProcessThatHasEnded_IsProcNotFound) {
    Child child;
    const pid_t id = child.id();
    ProcessSerialNumber number = {};
    ASSERT_EQ(GetProcessForPID(id, &number), noErr);
    pid_t pid = -7;
    child.kill();
    EXPECT_EQ(GetProcessPID(&number, &pid), procNotFound) << "ended, but not yet waited for";
    child.end();
    EXPECT_EQ(GetProcessPID(&number, &pid), procNotFound);
    EXPECT_EQ(pid, -7);
    EXPECT_EQ(GetProcessForPID(id, &number), procNotFound);
    EXPECT_EQ(GetProcessForPID(-1, &number), procNotFound);
}

TEST(Processes, NullPointers_AreParameterErrors) {
    const ProcessSerialNumber current = {0, kCurrentProcess};
    pid_t pid = -7;
    EXPECT_EQ(GetCurrentProcess(nullptr), paramErr);
    EXPECT_EQ(GetProcessPID(nullptr, &pid), paramErr);
    EXPECT_EQ(GetProcessPID(&current, nullptr), paramErr);
    EXPECT_EQ(GetProcessForPID(getpid(), nullptr), paramErr);
}

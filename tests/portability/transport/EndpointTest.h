// Shared by the tests of endpoints: a separate environment, and a process that waits.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <vector>

#include "portability/transport/Endpoint.h"
#include "tests/support/TemporaryEnvironment.h"

constexpr OSType kEndpointSignature = 'EndP';
constexpr char kAnnouncement[] = "POS_ENDPOINT";
using Outcome = portability::EndpointClaim::Outcome;

// A process that runs a function, reports its result through a pipe, and waits to be killed.
class WaitingProcess {
  public:
    template <class Body>
    explicit WaitingProcess(Body body) {
        int ends[2];
        EXPECT_EQ(pipe(ends), 0);
        process_ = fork();
        if (process_ == 0) {
            const char result = static_cast<char>(body());
            if (write(ends[1], &result, 1) == 1) pause();
            _exit(0);
        }
        close(ends[1]);
        char result = -1;
        if (read(ends[0], &result, 1) == 1) result_ = result;
        close(ends[0]);
    }
    ~WaitingProcess() { kill(); }

    int result() const { return result_; }
    pid_t id() const { return process_; }

    void kill() {
        if (process_ > 0) {
            ::kill(process_, SIGKILL);
            waitpid(process_, nullptr, 0);
        }
        process_ = -1;
    }

  private:
    pid_t process_ = -1;
    int result_ = -1;
};

// Runs `act` with the numbers from 0 in `count` processes at the same moment, and returns its results. Each
// process lives until all results are there.
template <class Act>
std::vector<int> resultsAtOnce(size_t count, Act act) {
    int start[2];
    int results[2];
    if (pipe(start) != 0 || pipe(results) != 0) throw std::runtime_error("no pipe");
    std::vector<pid_t> processes;
    for (size_t i = 0; i < count; ++i) {
        processes.push_back(fork());
        if (processes.back() != 0) continue;
        close(start[1]);
        char token;
        if (read(start[0], &token, 1) != 0) _exit(1);
        const char result = static_cast<char>(act(i));
        if (write(results[1], &result, 1) == 1) pause();
        _exit(1);
    }
    close(start[0]);
    close(start[1]);
    std::vector<int> found;
    for (size_t i = 0; i < count; ++i) {
        char result = -1;
        EXPECT_EQ(read(results[0], &result, 1), 1);
        found.push_back(result);
    }
    for (const pid_t process : processes) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
    close(results[0]);
    close(results[1]);
    return found;
}

inline int claimAndKeep() {
    static portability::EndpointClaim claim;
    return static_cast<int>(portability::EndpointClaim::claim(kEndpointSignature, claim));
}

// Expects that exactly one of these outcomes is a claim, and that none is a failure.
inline void expectOneClaim(const std::vector<int>& outcomes) {
    EXPECT_EQ(std::count(outcomes.begin(), outcomes.end(), static_cast<int>(Outcome::claimed)), 1);
    EXPECT_EQ(std::count(outcomes.begin(), outcomes.end(), static_cast<int>(Outcome::failed)), 0);
}

inline Outcome claimAndLetGo() {
    portability::EndpointClaim claim;
    return portability::EndpointClaim::claim(kEndpointSignature, claim);
}

inline bool isConnectable(OSType signature = kEndpointSignature) {
    return static_cast<bool>(portability::FileDescriptor(portability::connectToEndpoint(signature)));
}

class EndpointTest : public testing::Test {
  protected:
    ~EndpointTest() override { unsetenv(kAnnouncement); }

    TemporaryEnvironment environment_;
};

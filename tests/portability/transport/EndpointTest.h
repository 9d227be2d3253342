// Shared by the tests of endpoints: a separate environment, and a process that waits.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "portability/transport/Endpoint.h"
#include "tests/support/TemporaryEnvironment.h"

constexpr OSType kEndpointSignature = 'EndP';
constexpr char kAnnouncement[] = "POS_EVENT_ENDPOINT";
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

// A server that is ending does not prevent hosts from launching the next one.
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/endtoend/EndToEnd.h"

namespace dovrel::test {
namespace {

// A process of the server's program that has no endpoint, as between the end of its event loop and its exit.
// The system stops it before its first instruction.
class ServerWithoutEndpoint {
  public:
    explicit ServerWithoutEndpoint(const std::string& program) : process_(fork()) {
        if (process_ == 0) {
            ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
            execl(program.c_str(), program.c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
        int status = 0;
        waitpid(process_, &status, 0);
        EXPECT_TRUE(WIFSTOPPED(status)) << "it runs the server's program and is stopped";
    }
    ServerWithoutEndpoint(const ServerWithoutEndpoint&) = delete;
    ServerWithoutEndpoint& operator=(const ServerWithoutEndpoint&) = delete;
    ~ServerWithoutEndpoint() {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }

  private:
    const pid_t process_;
};

class ServerExit : public EndToEnd {
  protected:
    ServerExit() { library_.InitializePOS(); }
    ~ServerExit() override { library_.TerminatePOS(); }
};

TEST_F(ServerExit, ServerThatIsStillEnding_DoesNotPreventHostsFromLaunchingTheNext) {
    const ServerWithoutEndpoint ending(root_.serverExecutable());
    const uint32_t application = host_.registered();
    EXPECT_EQ(host_.command(application, "ping", "next").bytes, "next");
}

}  // namespace
}  // namespace dovrel::test

// Runs a server in its own process on a chosen processor.
#pragma once

#include <sched.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

/// Pins the calling process to this processor.
inline void pinTo(int processor) {
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(processor, &set);
    sched_setaffinity(0, sizeof set, &set);
}

/// Runs `serve` in a child process. The constructor starts the child, and the destructor kills it.
class ForkedServer {
  public:
    template <class Serve>
    ForkedServer(int processor, Serve serve) : process_(fork()) {
        if (process_ != 0) return;
        pinTo(processor);
        serve();
        _exit(0);
    }
    ~ForkedServer() {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }

  private:
    pid_t process_;
};

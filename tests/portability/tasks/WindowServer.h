// A window server of the test's own, in memory, ended with the object. While it exists, DISPLAY names it.
#pragma once

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <string>

class WindowServer {
  public:
    WindowServer() {
        int display[2];
        if (pipe(display) != 0) throw std::runtime_error("no pipe");
        process_ = fork();
        if (process_ == 0) run(display[1]);
        close(display[1]);
        setenv("DISPLAY", (":" + numberFrom(display[0])).c_str(), 1);
        close(display[0]);
    }
    WindowServer(const WindowServer&) = delete;
    WindowServer& operator=(const WindowServer&) = delete;
    ~WindowServer() {
        unsetenv("DISPLAY");
        kill(process_, SIGTERM);
        waitpid(process_, nullptr, 0);
    }

  private:
    [[noreturn]] static void run(int display) {
        const std::string descriptor = std::to_string(display);
        // -noreset: the server would otherwise start again each time its last client leaves.
        execlp("Xvfb", "Xvfb", "-displayfd", descriptor.c_str(), "-screen", "0", "320x200x24", "-nolisten",
               "tcp", "-noreset", nullptr);
        _exit(127);
    }

    // The server writes its number and a line end once it can be reached.
    static std::string numberFrom(int display) {
        std::string number;
        char digit = 0;
        while (read(display, &digit, 1) == 1 && digit != '\n')
            number += digit;
        if (number.empty()) throw std::runtime_error("Xvfb did not start");
        return number;
    }

    pid_t process_ = -1;
};

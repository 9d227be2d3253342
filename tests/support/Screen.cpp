#include "tests/support/Screen.h"

#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace dovrel::test {

// -displayfd: the server chooses a free number and writes it when it accepts connections. -noreset: without
// it the server restarts each time its last client disconnects.
Screen::Screen(const std::string& size)
    : server_({"Xvfb", "-displayfd", "1", "-screen", "0", size + "x24", "-nolisten", "tcp", "-noreset"},
              "/dev/null") {
    const std::string number = server_.readLine();
    if (number.empty()) throw std::runtime_error("Xvfb does not start");
    setenv("DISPLAY", (":" + number).c_str(), 1);
    setenv("GDK_BACKEND", "x11", 1);
}

Screen::~Screen() {
    unsetenv("DISPLAY");
    unsetenv("GDK_BACKEND");
    end();
}

// The server is asked to end, not killed, because only then it removes its socket.
void Screen::end() {
    if (std::exchange(hasEnded_, true)) return;
    server_.signal(SIGTERM);
    server_.wait();
}

}  // namespace dovrel::test

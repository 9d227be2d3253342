#include "tests/ui/Desktop.h"

#include <csignal>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

#include "tests/support/WaitUntil.h"

namespace dovrel::test {

namespace {

// Where the window classes put the buttons of an alert: the middle of the last one from the right and lower
// edge of the window, and the step to the next one.
constexpr int kFromRight = 44;
constexpr int kFromBottom = 20;
constexpr int kStep = 82;

std::string openAlert() {
    std::istringstream windows(outputOf({"xdotool", "search", "--onlyvisible", "--name", "^Alert$"}));
    std::string last;
    for (std::string window; std::getline(windows, window);)
        last = window;
    return last;
}

struct Size {
    int width = 0;
    int height = 0;
};

Size sizeOf(const std::string& window) {
    std::istringstream lines(outputOf({"xdotool", "getwindowgeometry", "--shell", window}));
    Size size;
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("WIDTH=", 0) == 0) size.width = std::stoi(line.substr(6));
        if (line.rfind("HEIGHT=", 0) == 0) size.height = std::stoi(line.substr(7));
    }
    return size;
}

}  // namespace

Desktop::Desktop() {
    // -noreset: the screen would otherwise start anew each time its last client leaves. The number comes on
    // descriptor 1 once it can be reached.
    screen_ = std::make_unique<ChildProcess>(
        std::vector<std::string>{"Xvfb", "-displayfd", "1", "-screen", "0", "1024x768x24", "-nolisten", "tcp",
                                 "-noreset"},
        "/dev/null");
    const std::string number = screen_->readLine();
    if (number.empty()) throw std::runtime_error("Xvfb does not start");
    setenv("DISPLAY", (":" + number).c_str(), 1);

    windowManager_ =
        std::make_unique<ChildProcess>(std::vector<std::string>{"openbox", "--sm-disable"}, "/dev/null");
    // Only a window manager tells the number of desktops.
    if (!waitUntil([] { return !outputOf({"xdotool", "get_num_desktops"}).empty(); })) {
        throw std::runtime_error("openbox does not start");
    }
}

Desktop::~Desktop() {
    unsetenv("DISPLAY");
}

std::string Desktop::waitForAlert() {
    std::string window;
    waitUntil([&window] { return !(window = openAlert()).empty(); });
    return window;
}

bool Desktop::hasAlert() {
    return !openAlert().empty();
}

// A press and a release in the same moment are not seen, and the release only when the pointer moves
// afterwards.
void Desktop::clickButton(const std::string& window, int fromRight) {
    const Size size = sizeOf(window);
    outputOf({"xdotool", "mousemove", "--window", window,
              std::to_string(size.width - kFromRight - kStep * fromRight),
              std::to_string(size.height - kFromBottom), "sleep", "0.15", "mousedown", "1", "sleep", "0.15",
              "mouseup", "1"});
    movePointer();
}

void Desktop::pressKey(const std::string& window, const std::string& key) {
    outputOf(
        {"xdotool", "windowfocus", window, "sleep", "0.15", "keydown", key, "sleep", "0.15", "keyup", key});
    movePointer();
}

void Desktop::movePointer() {
    for (int turn = 0; turn < 3; ++turn)
        outputOf({"xdotool", "sleep", "0.1", "mousemove_relative", "--", "1", "0", "sleep", "0.1",
                  "mousemove_relative", "--", "-1", "0"});
}

int Desktop::takePicture(const std::string& path) {
    outputOf({"import", "-window", "root", path});
    const std::string colours = outputOf({"identify", "-format", "%k\n", path});
    return colours.empty() ? 0 : std::stoi(colours);
}

void Desktop::end() {
    screen_->signal(SIGKILL);
    screen_->wait();
}

}  // namespace dovrel::test

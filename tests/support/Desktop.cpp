#include "tests/support/Desktop.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "tests/support/WaitUntil.h"

namespace dovrel::test {

namespace {

// How often an alert is used, and how often after each use the test checks that it has gone.
constexpr int kUses = 10;
constexpr int kLooks = 100;

// An empty window has one or two colours, an alert with its text has many.
constexpr int kColoursOfNothing = 20;

// Returns what xdotool prints about the window; "" if the window is gone.
std::string readGeometry(const std::string& window) {
    return readOutput({"xdotool", "getwindowgeometry", "--shell", window});
}

// Returns the process of the window. It identifies an alert; the window's number does not, because the window of
// the next helper may get the same one.
std::string readProcess(const std::string& window) {
    return readOutput({"xdotool", "getwindowpid", window});
}

int numberAfter(const std::string& name, const std::string& geometry) {
    const size_t at = geometry.find(name);
    return at == std::string::npos ? 0 : std::stoi(geometry.substr(at + name.size()));
}

// Returns the area in the notation of the picture tools.
std::string readArea(const std::string& geometry) {
    const auto number = [&geometry](const char* name) { return std::to_string(numberAfter(name, geometry)); };
    return number("WIDTH=") + "x" + number("HEIGHT=") + "+" + number("X=") + "+" + number("Y=");
}

bool hasKeyboard(const std::string& window) {
    return readOutput({"xdotool", "getactivewindow"}) == window + '\n';
}

// Normally the window manager does this by itself, unless the window answered it too late.
void giveKeyboard(const std::string& window) {
    readOutput({"xdotool", "windowactivate", window});
}

// GNUstep's window classes handle pending events only when another event arrives.
void movePointer() {
    readOutput({"xdotool", "mousemove_relative", "--", "1", "0", "mousemove_relative", "--", "-1", "0"});
}

}  // namespace

// The buttons are as wide as the longest caption needs. With all captions in the tests, the second button is
// at the place that is clicked.
const AlertLook& helperAlerts() {
    static const AlertLook look = {{"--class", "^dovrel-alert$"}, 67, 35, 110, 41};
    return look;
}

const AlertLook& gnustepAlerts() {
    static const AlertLook look = {{"--name", "^Alert$"}, 44, 20, 82, 0};
    return look;
}

Desktop::Desktop(const AlertLook& look) : look_(look) {}

std::vector<std::string> Desktop::alerts() const {
    std::vector<std::string> search = {"xdotool", "search", "--onlyvisible"};
    search.insert(search.end(), look_.search.begin(), look_.search.end());
    std::istringstream lines(readOutput(search));
    std::vector<std::string> windows;
    for (std::string window; std::getline(lines, window);)
        windows.push_back(window);
    mostAlerts_ = std::max(mostAlerts_, windows.size());
    return windows;
}

std::string Desktop::readTitle(const std::string& window) {
    const std::string line = readOutput({"xdotool", "getwindowname", window});
    return line.substr(0, line.find('\n'));
}

bool Desktop::isOpen(const std::string& window, const std::string& process) const {
    const std::vector<std::string> open = alerts();
    return std::find(open.begin(), open.end(), window) != open.end() && readProcess(window) == process;
}

std::string Desktop::waitForAlert() {
    std::string found;
    std::string lastGeometry;
    waitUntil([&] {
        for (const std::string& window : alerts()) {
            const std::string geometry = readGeometry(window);
            const bool rests = !geometry.empty() && geometry == lastGeometry;
            lastGeometry = geometry;
            if (!hasKeyboard(window)) {
                giveKeyboard(window);
            } else if (rests) {
                found = window;
            }
        }
        return !found.empty();
    });
    return found;
}

bool Desktop::closes(const std::string& window, const std::string& process) const {
    for (int look = 0; look < kLooks; ++look) {
        if (!isOpen(window, process)) return true;
        movePointer();
    }
    return false;
}

// A click or key press may be lost while a window is still being set up, so it is repeated. It is not
// repeated after the window has gone, because another window may be in its place by then.
template <typename Use>
bool Desktop::answer(const Use& use) {
    const std::string window = waitForAlert();
    if (window.empty()) return false;
    const std::string process = readProcess(window);
    for (int attempt = 0; attempt < kUses; ++attempt) {
        use(window);
        if (closes(window, process)) return true;
    }
    return false;
}

bool Desktop::clickButton(int fromRight) {
    return answer([this, fromRight](const std::string& window) {
        const int width = numberAfter("WIDTH=", readGeometry(window));
        click(window, width - look_.fromRight - look_.step * fromRight);
    });
}

void Desktop::clickHelp() {
    click(waitForAlert(), look_.helpFromLeft);
}

// Clicks in the row of the buttons.
void Desktop::click(const std::string& window, int fromLeft) const {
    const int height = numberAfter("HEIGHT=", readGeometry(window));
    readOutput({"xdotool", "mousemove", "--window", window, std::to_string(fromLeft),
                std::to_string(height - look_.fromBottom), "mousedown", "1"});
    movePointer();
    readOutput({"xdotool", "mouseup", "1"});
}

bool Desktop::pressKey(const std::string& key) {
    return answer([&key](const std::string& window) {
        if (hasKeyboard(window)) readOutput({"xdotool", "key", key});
    });
}

bool Desktop::takePicture(const std::string& name) {
    const std::string window = waitForAlert();
    std::filesystem::create_directories(DOVREL_PICTURES);
    const std::string path = DOVREL_PICTURES "/" + name + ".png";
    std::string last;
    return waitUntil([&] {
        movePointer();
        readOutput({"import", "-window", "root", path});
        const std::string content = readOutput(
            {"convert", path, "-crop", readArea(readGeometry(window)), "-format", "%k %#\n", "info:"});
        const bool rests = !content.empty() && content == last;
        last = content;
        return rests && std::stoi(content) > kColoursOfNothing;
    });
}

}  // namespace dovrel::test

#include "tests/portability/alerts/HelperScreen.h"

#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "tests/support/WaitUntil.h"

namespace alerthelper::test {

namespace {

using dovrel::test::readOutput;

std::string findWindow() {
    const std::string lines = readOutput({"xdotool", "search", "--onlyvisible", "--class", "^dovrel-alert$"});
    return lines.substr(0, lines.find('\n'));
}

std::string readGeometry(const std::string& window) {
    return readOutput({"xdotool", "getwindowgeometry", "--shell", window});
}

int numberAfter(const std::string& name, const std::string& geometry) {
    const size_t at = geometry.find(name);
    return at == std::string::npos ? -1 : std::stoi(geometry.substr(at + name.size()));
}

}  // namespace

HelperScreen::HelperScreen(const std::string& size, Manager manager) : screen_(size) {
    if (manager == Manager::openbox) manager_ = std::make_unique<dovrel::test::WindowManager>();
}

std::string HelperScreen::waitForWindow() const {
    std::string last;
    std::string window;
    const bool rests = dovrel::test::waitUntil([&] {
        window = findWindow();
        if (window.empty()) return false;
        const std::string geometry = readGeometry(window);
        const bool hasMoved = geometry.empty() || geometry != last;
        last = geometry;
        const std::string question = manager_ ? "getactivewindow" : "getwindowfocus";
        return !hasMoved && readOutput({"xdotool", question}) == window + "\n";
    });
    return rests ? window : "";
}

bool HelperScreen::hasWindow() {
    return !findWindow().empty();
}

bool HelperScreen::windowGoes() {
    return dovrel::test::waitUntil([] { return !hasWindow(); });
}

// xdotool counts the borders twice in a window's position. So the pointer is moved to the middle of the
// window, and its position is used.
Area HelperScreen::readArea(const std::string& window) {
    const std::string geometry = readGeometry(window);
    const int width = numberAfter("WIDTH=", geometry);
    const int height = numberAfter("HEIGHT=", geometry);
    const std::string pointer =
        readOutput({"xdotool", "mousemove", "--window", window, std::to_string(width / 2),
                    std::to_string(height / 2), "getmouselocation", "--shell"});
    return {numberAfter("X=", pointer) - width / 2, numberAfter("Y=", pointer) - height / 2, width, height};
}

Area HelperScreen::areaWithBorders(const std::string& window) {
    const Area inner = readArea(window);
    std::istringstream text(property(window, "_NET_FRAME_EXTENTS"));
    int left = -1;
    int right = -1;
    int top = -1;
    int bottom = -1;
    char comma = 0;
    text >> left >> comma >> right >> comma >> top >> comma >> bottom;
    if (!text) throw std::runtime_error("the window has no borders");
    return {inner.x - left, inner.y - top, inner.width + left + right, inner.height + top + bottom};
}

std::string HelperScreen::property(const std::string& window, const std::string& name) {
    std::istringstream lines(readOutput({"obxprop", "--id", window}));
    for (std::string line; std::getline(lines, line);) {
        const size_t value = line.find(" = ");
        if (line.compare(0, name.size() + 1, name + "(") == 0 && value != std::string::npos)
            return line.substr(value + 3);
    }
    return "";
}

void HelperScreen::pressKey(const std::string& key) {
    readOutput({"xdotool", "key", key});
}

void HelperScreen::click(const std::string& window, int x, int y) {
    readOutput({"xdotool", "mousemove", "--window", window, std::to_string(x), std::to_string(y), "mousedown",
                "1", "mouseup", "1"});
}

void HelperScreen::takePicture(const std::string& name) {
    std::filesystem::create_directories(DOVREL_PICTURES);
    readOutput({"import", "-window", "root", DOVREL_PICTURES "/" + name + ".png"});
}

void HelperScreen::end() {
    screen_.end();
}

}  // namespace alerthelper::test

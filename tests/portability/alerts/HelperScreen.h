// A screen with a window manager, and simulated mouse and keyboard input for the alert helper's window.
#pragma once

#include <memory>
#include <string>

#include "tests/support/Screen.h"
#include "tests/support/WindowManager.h"

namespace alerthelper::test {

/// An area in pixels of the screen.
struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

class HelperScreen {
  public:
    enum class Manager { openbox, none };

    explicit HelperScreen(const std::string& size = "1024x768", Manager manager = Manager::openbox);

    /// Waits until a window of the helper is open, has the keyboard focus and no longer changes. Returns its
    /// number, or "" if that does not happen within a minute.
    std::string waitForWindow() const;

    /// Returns true if a window of the helper is open.
    static bool hasWindow();

    /// Waits until no window is open; returns false if that does not happen within a minute.
    static bool windowGoes();

    /// Both return the area of the window, without or with its borders. They move the pointer.
    static Area readArea(const std::string& window);
    static Area areaWithBorders(const std::string& window);

    /// Returns a property of the window as obxprop prints it.
    static std::string property(const std::string& window, const std::string& name);

    /// Sends a key to the window with the keyboard focus, or a click to a position in a window.
    static void pressKey(const std::string& key);
    static void click(const std::string& window, int x, int y);

    /// Saves a picture of the screen for people to look at, as pictures/NAME.png in the build folder.
    static void takePicture(const std::string& name);

    /// Ends the screen while windows are still on it.
    void end();

  private:
    dovrel::test::Screen screen_;
    std::unique_ptr<dovrel::test::WindowManager> manager_;
};

}  // namespace alerthelper::test

// A screen with a window manager, and a hand that uses mouse and keyboard on the window of the alert helper.
#pragma once

#include <memory>
#include <string>

#include "tests/support/Screen.h"
#include "tests/support/WindowManager.h"

namespace alerthelper::test {

/// In pixels of the screen.
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

    /// Waits until a window of the helper is on the screen, has the keyboard and rests. Returns its number,
    /// "" if that does not happen within half a minute.
    std::string waitForWindow() const;

    /// Whether a window of the helper is on the screen.
    static bool hasWindow();

    /// Waits until there is none; false if that does not happen within half a minute.
    static bool windowGoes();

    /// The window without, and with its borders. Moves the pointer.
    static Area areaOf(const std::string& window);
    static Area areaWithBorders(const std::string& window);

    /// A property of the window, as obxprop writes it.
    static std::string property(const std::string& window, const std::string& name);

    // To the window that has the keyboard, and to a place in a window.
    static void pressKey(const std::string& key);
    static void click(const std::string& window, int x, int y);

    /// Takes a picture of the screen for people to look at, pictures/NAME.png in the build folder.
    static void takePicture(const std::string& name);

    /// Takes the screen away from under its windows.
    void end();

  private:
    dovrel::test::Screen screen_;
    std::unique_ptr<dovrel::test::WindowManager> manager_;
};

}  // namespace alerthelper::test

// A screen in memory, a window server of the test's own, ended with the object.
#pragma once

#include <string>

#include "tests/support/ChildProcess.h"

namespace dovrel::test {

class Screen {
  public:
    /// Returns when the screen can be used. `size` is in pixels. While the object lives, DISPLAY names the
    /// screen, and GTK uses it on a desktop with Wayland as well.
    explicit Screen(const std::string& size = "1024x768");
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    ~Screen();

    /// Takes the screen away from under its windows.
    void end();

  private:
    ChildProcess server_;
    bool hasEnded_ = false;
};

}  // namespace dovrel::test

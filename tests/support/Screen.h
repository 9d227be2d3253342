// A virtual screen: a window server that belongs to the test and ends with the object.
#pragma once

#include <string>

#include "tests/support/ChildProcess.h"

namespace dovrel::test {

class Screen {
  public:
    /// Returns when the screen can be used. `size` is in pixels. While the object exists, DISPLAY names the
    /// screen, and GTK uses it even if the test runs on a Wayland desktop.
    explicit Screen(const std::string& size = "1024x768");
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    ~Screen();

    /// Ends the screen while windows are still on it.
    void end();

  private:
    ChildProcess server_;
    bool hasEnded_ = false;
};

}  // namespace dovrel::test

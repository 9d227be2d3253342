// A window manager that belongs to the test, on the screen that DISPLAY names.
#pragma once

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace dovrel::test {

class WindowManager {
  public:
    /// Returns when the window manager is ready.
    WindowManager();

  private:
    TemporaryFolder home_;
    ChildProcess process_;
};

}  // namespace dovrel::test

// A screen in memory with a window manager, and a hand that uses mouse and keyboard on it.
#pragma once

#include <memory>
#include <string>

#include "tests/ui/ChildProcess.h"

namespace dovrel::test {

class Desktop {
  public:
    /// While the object lives, DISPLAY names it.
    Desktop();
    ~Desktop();

    /// Waits until an alert is open and answers its window; "" when none comes.
    std::string waitForAlert();

    /// Whether an alert is open now.
    bool hasAlert();

    // Uses the open alert; buttons are counted from the right, 0 is the first. Where a window may not be
    // ready for the first try, these are for calling again.
    void clickButton(const std::string& window, int fromRight);
    void pressKey(const std::string& window, const std::string& key);

    /// Takes a picture of the whole screen; the number of different colours in it.
    int takePicture(const std::string& path);

    /// Takes the screen away from under its windows.
    void end();

  private:
    static void movePointer();

    std::unique_ptr<ChildProcess> screen_;
    std::unique_ptr<ChildProcess> windowManager_;
};

}  // namespace dovrel::test

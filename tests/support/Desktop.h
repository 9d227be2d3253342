// A screen with a window manager, and a hand that uses mouse and keyboard on the alerts there.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/Screen.h"
#include "tests/support/TemporaryFolder.h"

namespace dovrel::test {

class Desktop {
  public:
    /// Returns when the window manager works. While the object lives, DISPLAY names the screen.
    Desktop();

    /// Waits until an alert that has not been answered yet is open, has the keyboard and does not move any
    /// more; answers its window, "" when none comes within half a minute.
    std::string waitForAlert();

    /// The windows of the alerts that are open now.
    std::vector<std::string> alerts() const;

    // Answers the alert that is open, or comes: uses it until its window is gone. False when that does not
    // happen. Buttons are counted from the right, 0 is the first.
    bool clickButton(int fromRight);
    bool pressKey(const std::string& key);

    /// Takes a picture of the whole screen; the number of different colours in it.
    int takePicture(const std::string& path) const;

    /// Takes the screen away from under its windows.
    void end() { screen_.end(); }

  private:
    template <typename Use>
    bool answer(const Use& use);
    bool isOpen(const std::string& window) const;
    bool closes(const std::string& window) const;

    TemporaryFolder home_;
    Screen screen_;
    ChildProcess windowManager_;
    std::set<std::string> answered_;
};

}  // namespace dovrel::test
